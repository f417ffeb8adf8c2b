#include "tests/end_to_end/rig/run_tests.h"

#include <gtest/gtest.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <fstream>
#include <string>

namespace end_to_end {

namespace {

void endAllChildren() {
    const std::string children = "/proc/self/task/" + std::to_string(getpid()) + "/children";
    while (std::ifstream list{children}) {
        for (pid_t child = 0; list >> child;) kill(child, SIGKILL);
        if (waitpid(-1, nullptr, 0) < 0) return;
    }
}

}  // namespace

int runTests(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    prctl(PR_SET_CHILD_SUBREAPER, 1);  // Orphans become children of this process.
    const int status = RUN_ALL_TESTS();
    endAllChildren();
    return status;
}

}  // namespace end_to_end
