#include "platform/workspace.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <thread>

#include "tests/support/shell.h"

namespace {

using namespace std::chrono_literals;
using platform::openInBrowser;
using platform::Url;
using testSupport::quoted;
using testSupport::shell;

// The opener found first is a script of the test's own, started in the test's folder.
class OpenersProcess : public testing::Test {
  protected:
    void SetUp() override {
        setenv("PATH", (folder_.path().string() + ":/usr/bin:/bin").c_str(), 1);
        ASSERT_EQ(mkfifo(file("gate").c_str(), 0600), 0);
        ASSERT_EQ(mkfifo(file("answer").c_str(), 0600), 0);
    }

    [[nodiscard]] std::filesystem::path file(const std::string& name) const { return folder_.path() / name; }

    void opener(const std::string& shellText) const {
        std::ofstream(file("xdg-open")) << "#!/bin/sh\ncd " << quoted(folder_.path()) << "\n" << shellText << "\n";
        chmod(file("xdg-open").c_str(), 0755);
    }
    [[nodiscard]] std::string textOf(const std::string& name) const {
        std::ostringstream text;
        text << std::ifstream(file(name), std::ios::binary).rdbuf();
        return text.str();
    }
    // Lets an opener go on that reads from the gate; false when there is none.
    [[nodiscard]] bool openGate() const {
        return shell("timeout 30 sh -c " + quoted("echo >" + quoted(file("gate")))).status == 0;
    }
    [[nodiscard]] std::string answer() const { return shell("timeout 30 cat " + quoted(file("answer"))).output; }

    [[nodiscard]] static Url page() { return Url::parse("http://e.example/").value(); }

  private:
    testSupport::TemporaryFolder folder_;
};

TEST_F(OpenersProcess, OutputGoesNowhere) {
    opener("echo on output; echo on error >&2");
    EXPECT_EQ(shell(CHILD_PATH " http://e.example/ 2>&1").output, "taken\n");
    opener("echo on output; echo on error >&2; exit 3");
    EXPECT_EQ(shell(CHILD_PATH " http://e.example/ 2>&1").output, "refused\n");
}

TEST_F(OpenersProcess, InputIsEmpty) {
    opener("cat >read; echo done >>read");
    EXPECT_EQ(shell("echo typed | " CHILD_PATH " http://e.example/").output, "taken\n");
    EXPECT_EQ(textOf("read"), "done\n");
}

TEST_F(OpenersProcess, OutlivesTheCallerAndItsProcessGroup) {
    opener("read line <gate; echo still here >answer");
    // Ends with its whole process group, as all that a terminal has started ends with the terminal.
    const auto caller = shell("setsid --wait sh -c " + quoted(CHILD_PATH " http://e.example/; kill -KILL 0"));
    EXPECT_EQ(caller.output, "taken\n");
    EXPECT_TRUE(openGate());
    EXPECT_EQ(answer(), "still here\n");
}

TEST_F(OpenersProcess, ThatEndsLateLeavesNoZombie) {
    opener("echo $$ >pid; read line <gate");
    ASSERT_TRUE(openInBrowser(page()));
    const std::filesystem::path process = "/proc/" + std::to_string(std::stoi(textOf("pid")));
    ASSERT_TRUE(std::filesystem::exists(process));
    ASSERT_TRUE(openGate());

    const auto deadline = std::chrono::steady_clock::now() + 30s;
    while (std::filesystem::exists(process) && std::chrono::steady_clock::now() < deadline) std::this_thread::yield();
    EXPECT_FALSE(std::filesystem::exists(process));
}

TEST_F(OpenersProcess, StartsWithEverySignalAsTheSystemHasIt) {
    std::signal(SIGPIPE, SIG_IGN);
    sigset_t blocked;
    sigemptyset(&blocked);
    sigaddset(&blocked, SIGTERM);
    ASSERT_EQ(pthread_sigmask(SIG_BLOCK, &blocked, nullptr), 0);
    // In the shell's own place: while a shell waits for a child, it blocks signals itself.
    opener("exec grep -E '^Sig(Blk|Ign):' /proc/self/status >signals");
    EXPECT_TRUE(openInBrowser(page()));
    pthread_sigmask(SIG_UNBLOCK, &blocked, nullptr);
    std::signal(SIGPIPE, SIG_DFL);

    // Two signals belong to the C library, which looks after them itself.
    constexpr unsigned long long ofTheLibrary = 1ULL << 31 | 1ULL << 32;
    unsigned long long blockedThere = ~0ULL;
    unsigned long long ignoredThere = ~0ULL;
    ASSERT_EQ(std::sscanf(textOf("signals").c_str(), "SigBlk: %llx SigIgn: %llx", &blockedThere, &ignoredThere), 2);
    EXPECT_EQ(blockedThere, 0U);
    EXPECT_EQ(ignoredThere & ~ofTheLibrary, 0U);
}

TEST_F(OpenersProcess, HasTheUsersEnvironment) {
    setenv("DISPLAY", ":77", 1);
    opener("echo \"$DISPLAY\" >display");
    EXPECT_TRUE(openInBrowser(page()));
    EXPECT_EQ(textOf("display"), ":77\n");
}

TEST_F(OpenersProcess, ThatIsFoundLaterOnThePathIsStartedToo) {
    const testSupport::TemporaryFolder first;
    std::ofstream(first.path() / "xdg-open") << "not executable";
    setenv("PATH", ("/nonexistent:" + first.path().string() + ":" + std::getenv("PATH")).c_str(), 1);
    opener("echo started >note");
    EXPECT_TRUE(openInBrowser(page()));
    EXPECT_EQ(textOf("note"), "started\n");
}

}  // namespace
