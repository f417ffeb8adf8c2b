// The program's back ends, with a home and a PATH of the test.
#include "tests/contract/every_back_end.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QCoreApplication>
#include <cstdlib>
#include <fstream>

#include "platform/log.h"
#include "tests/support/files.h"

namespace {

const testSupport::TemporaryFolder& folder() {
    static const testSupport::TemporaryFolder theFolder;
    return theFolder;
}

}  // namespace

void everyBackEnd::runQueuesUntil(const std::function<bool()>& done) {
    while (!done()) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

void everyBackEnd::makeEcho() {}

void everyBackEnd::openPages(bool opens) {
    const std::string opener = folder().path() / "xdg-open";
    std::ofstream(opener) << "#!/bin/sh\nexit " << (opens ? 0 : 1) << "\n";
    chmod(opener.c_str(), 0755);
}

std::vector<std::string> everyBackEnd::linesOf(const std::function<void()>& action) {
    const std::string file = folder().path() / "log";
    const int log = open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    dup2(log, STDOUT_FILENO);  // beginLog() then sends the test's own output to standard error.
    close(log);
    platform::beginLog();
    action();
    std::vector<std::string> lines;
    std::ifstream text(file);
    for (std::string line; std::getline(text, line);) lines.push_back(line);
    return lines;
}

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    const QCoreApplication application(argc, argv);
    setenv("HOME", folder().path().c_str(), 1);
    unsetenv("XDG_CONFIG_HOME");
    setenv("PATH", (folder().path().string() + ":/usr/bin:/bin").c_str(), 1);
    return RUN_ALL_TESTS();
}
