// The entry point of the end-to-end tests. At the end it kills all processes that they left running.
#include <gtest/gtest.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <fstream>
#include <string>

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    prctl(PR_SET_CHILD_SUBREAPER, 1);  // Orphans become children of this process.
    const int status = RUN_ALL_TESTS();
    const std::string children = "/proc/self/task/" + std::to_string(getpid()) + "/children";
    do {
        std::ifstream list(children);
        for (pid_t child = 0; list >> child;) kill(child, SIGKILL);
    } while (waitpid(-1, nullptr, 0) > 0);
    return status;
}
