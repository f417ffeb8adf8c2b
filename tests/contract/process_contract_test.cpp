#include "platform/process.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "tests/support/files.h"
#include "tests/support/shell.h"

namespace {

using platform::standardOutputOf;
using testSupport::TemporaryFolder;

std::optional<std::string> shell(const std::string& text) {
    const std::string arguments[] = {"-c", text};
    return standardOutputOf("/bin/sh", arguments);
}

std::string commandIn(const TemporaryFolder& folder, const std::string& text, mode_t mode) {
    const std::filesystem::path file = folder.path() / "command";
    std::ofstream(file) << text;
    chmod(file.c_str(), mode);
    return file;
}

TEST(Process, ReturnsTheWholeOutput) {
    const std::string arguments[] = {"-h", "/"};
    const auto output = standardOutputOf("/bin/df", arguments);
    ASSERT_TRUE(output);
    EXPECT_EQ(output->rfind("Filesystem", 0), 0U);
    EXPECT_EQ(output->back(), '\n');
}

TEST(Process, AFileThatCannotBeStartedIsAbsent) {
    const TemporaryFolder folder;
    EXPECT_EQ(standardOutputOf("/nowhere/at/all", {}), std::nullopt);
    EXPECT_EQ(standardOutputOf(folder.path(), {}), std::nullopt);
    EXPECT_EQ(standardOutputOf(commandIn(folder, "#!/bin/sh\necho not executable\n", 0644), {}), std::nullopt);
    EXPECT_EQ(standardOutputOf(commandIn(folder, "echo no interpreter\n", 0755), {}), std::nullopt);
}

TEST(Process, ANameIsNotLookedUpInPath) { EXPECT_EQ(standardOutputOf("sh", {}), std::nullopt); }

TEST(Process, TheExitStatusIsIgnored) { EXPECT_EQ(shell("echo line; exit 1"), "line\n"); }

TEST(Process, OutputBeforeASignalCounts) { EXPECT_EQ(shell("echo line; kill -9 $$"), "line\n"); }

TEST(Process, StandardErrorIsNotOutput) { EXPECT_EQ(shell("echo x >&2"), ""); }

TEST(Process, AMegabyteOnStandardErrorDoesNotStopTheCommand) {
    EXPECT_EQ(shell("head -c 1048576 /dev/zero >&2; echo done"), "done\n");
    EXPECT_EQ(shell("printf '%1048576s' '' >&2; echo done"), "done\n");  // Written by the shell itself.
}

TEST(Process, OutputBytesAreUnchanged) { EXPECT_EQ(shell(R"(printf '\377\000a')"), std::string("\xFF\0a", 3)); }

TEST(Process, AnOutputThatJustFitsThePipeIsWhole) {
#ifdef __linux__
    constexpr std::size_t size = 65536;
#else
    constexpr std::size_t size = 16384;
#endif
    const auto output = shell("head -c " + std::to_string(size) + " /dev/zero");
    ASSERT_TRUE(output);
    EXPECT_EQ(output->size(), size);
}

TEST(Process, ArgumentsArriveUnchanged) {
    const TemporaryFolder folder;
    const std::string arguments[] = {"", "a b", "\"quoted\" '$HOME' *", "-n"};
    EXPECT_EQ(standardOutputOf(commandIn(folder, "#!/bin/sh\nprintf '[%s]' \"$@\"\n", 0755), arguments),
              "[][a b][\"quoted\" '$HOME' *][-n]");
}

TEST(Process, TheChildInheritsEnvironmentAndWorkingDirectory) {
    setenv("PROCESS_CONTRACT", "value", 1);
    EXPECT_EQ(shell("echo $PROCESS_CONTRACT; pwd"), "value\n" + std::filesystem::current_path().string() + "\n");
}

TEST(Process, TheChildInheritsStandardInput) {
    const TemporaryFolder folder;
    const int input = open(commandIn(folder, "typed\n", 0600).c_str(), O_RDONLY);
    const int before = dup(STDIN_FILENO);
    ASSERT_EQ(dup2(input, STDIN_FILENO), STDIN_FILENO);
    EXPECT_EQ(shell("cat"), "typed\n");
    if (before >= 0) dup2(before, STDIN_FILENO);
    close(before);
    close(input);
}

TEST(Process, TheChildHasTwoPipesAndNoOtherDescriptor) {
    const int leaking = dup(STDERR_FILENO);
    const int before = dup(STDERR_FILENO);
    const int noPipe = open("/dev/null", O_WRONLY);  // A test runner may have made ours a pipe.
    dup2(noPipe, STDERR_FILENO);
    const auto output = standardOutputOf(CHILD_PATH, {});
    dup2(before, STDERR_FILENO);
    for (const int descriptor : {noPipe, before, leaking}) close(descriptor);
    EXPECT_EQ(output, "1 pipe\n2 pipe\n");
}

TEST(Process, TheChildIsAProcessGroupOfItsOwn) {
    EXPECT_EQ(shell("test $(ps -o pgid= -p $$) = $$ && echo own"), "own\n");
}

TEST(Process, TheChildHasDefaultSignals) {
    std::signal(SIGPIPE, SIG_IGN);
    EXPECT_EQ(shell("kill -PIPE $$; echo survived"), "");
}

TEST(Process, ASignalThatInterruptsTheWaitChangesNothing) {
    using Action = struct sigaction;
    Action interrupting{};
    interrupting.sa_handler = [](int) {};  // Without SA_RESTART.
    Action before{};
    ASSERT_EQ(sigaction(SIGUSR1, &interrupting, &before), 0);
    for (int round = 0; round < 20; ++round) {
        EXPECT_EQ(shell("kill -USR1 $PPID; echo line"), "line\n");
        EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1) << "a child is left that nobody has waited for";
    }
    sigaction(SIGUSR1, &before, nullptr);
}

TEST(Process, AGrandchildThatHoldsThePipeIsWaitedFor) {
    EXPECT_EQ(shell("(sleep 0.2; echo late) & echo early"), "early\nlate\n");
}

TEST(Process, WithoutAFreeDescriptorTheOutputIsAbsent) {
    rlimit before{};
    ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &before), 0);
    rlimit none = before;
    none.rlim_cur = 0;  // Open descriptors stay open.
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &none), 0);
    const auto output = shell("echo here");
    setrlimit(RLIMIT_NOFILE, &before);
    EXPECT_EQ(output, std::nullopt);
    EXPECT_EQ(shell("echo here"), "here\n");
}

TEST(Process, LeavesNoDescriptorBehind) {
    const auto openDescriptors = [] {
        int count = 0;
        for (int descriptor = 0; descriptor < 256; ++descriptor) count += fcntl(descriptor, F_GETFD) < 0 ? 0 : 1;
        return count;
    };
    const auto before = openDescriptors();
    for (int round = 0; round < 20; ++round) {
        EXPECT_EQ(standardOutputOf("/nowhere", {}), std::nullopt);
        EXPECT_EQ(shell("echo line"), "line\n");
    }
    EXPECT_EQ(openDescriptors(), before);
}

}  // namespace
