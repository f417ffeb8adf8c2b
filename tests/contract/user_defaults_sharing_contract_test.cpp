#include "platform/user_defaults.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <memory>
#include <set>
#include <sstream>

#include "tests/support/shell.h"

namespace {

using namespace platform;

// A child that is talked to while it runs.
class Conversation {
  public:
    explicit Conversation(std::vector<std::string> arguments) {
        std::array<int, 2> ends{};
        EXPECT_EQ(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()), 0);
        std::vector<char*> words;
        for (std::string& argument : arguments) words.push_back(argument.data());
        words.push_back(nullptr);
        child_ = fork();
        if (child_ == 0) {
            dup2(ends[1], STDIN_FILENO);
            dup2(ends[1], STDOUT_FILENO);
            execv(CHILD_PATH, words.data());
            _exit(127);
        }
        close(ends[1]);
        ours_ = ends[0];
    }
    ~Conversation() {
        close(ours_);
        waitpid(child_, nullptr, 0);
    }
    Conversation(const Conversation&) = delete;
    Conversation& operator=(const Conversation&) = delete;

    void go() const { EXPECT_EQ(send(ours_, "\n", 1, MSG_NOSIGNAL), 1); }

    // What it has printed up to the next line feed; less than that when it has ended or is silent for too long.
    [[nodiscard]] std::string line() const {
        constexpr int limit = 30'000;
        std::string text;
        pollfd readable{ours_, POLLIN, 0};
        for (char byte = 0; poll(&readable, 1, limit) == 1 && read(ours_, &byte, 1) == 1 && byte != '\n';) text += byte;
        return text;
    }

  private:
    pid_t child_ = -1;
    int ours_ = -1;
};

// The test's own process has the same store as its children.
class SharedUserDefaults : public testing::Test {
  protected:
    void SetUp() override {
        unsetenv("XDG_CONFIG_HOME");
        setenv("HOME", home_.path().c_str(), 1);
        // Where it is unset, the C library forgets and allocates its zone anew for each thread that asks for the time,
        // by a lock that a thread sanitizer doesn't see.
        setenv("TZ", "UTC", 1);
    }

    testSupport::TemporaryFolder home_;
};

TEST_F(SharedUserDefaults, RunningProcessesThatStoreAFirstValueAtTheSameMomentAlwaysAgree) {
    std::vector<std::unique_ptr<Conversation>> processes;
    for (const char* value : {"a", "b", "c", "d"}) {
        processes.push_back(std::make_unique<Conversation>(std::vector<std::string>{"child", "rounds", "50", value}));
    }
    for (int round = 0; round < 50; ++round) {
        for (const auto& process : processes) ASSERT_EQ(process->line(), "none") << "round " << round;
        for (const auto& process : processes) process->go();
        std::set<std::string> answers;
        for (const auto& process : processes) answers.insert(process->line());

        ASSERT_EQ(answers.size(), 1U) << "round " << round;
        EXPECT_TRUE((std::set<std::string>{"a", "b", "c", "d"}).count(*answers.begin())) << *answers.begin();
        EXPECT_EQ(userDefaults::string("round" + std::to_string(round)), *answers.begin());
    }
}

TEST_F(SharedUserDefaults, ThreadsAgreeOnAFirstValueAndLoseNoOther) {
    const testSupport::ShellResult result = testSupport::shell(CHILD_PATH " threads 8");
    ASSERT_EQ(result.status, 0);
    const auto first = userDefaults::string("first");
    ASSERT_TRUE(first.has_value());
    EXPECT_EQ(first->rfind("of ", 0), 0U) << *first;

    std::istringstream lines(result.output);
    for (int thread = 0; thread < 8; ++thread) {
        const std::string name = std::to_string(thread);
        std::string found;
        ASSERT_TRUE(std::getline(lines, found));
        EXPECT_EQ(found, *first + ", text " + name);
        EXPECT_EQ(userDefaults::string("own" + name), "text " + name);
        EXPECT_EQ(userDefaults::string("flag" + name), thread % 2 == 0 ? "1" : "0");
    }
}

TEST_F(SharedUserDefaults, ThreadsOfSeveralProcessesAgreeOnAFirstValue) {
    const std::string child = CHILD_PATH " threads 4 & ";
    std::istringstream lines(testSupport::shell(child + child + child + "wait").output);
    const auto first = userDefaults::string("first");
    ASSERT_TRUE(first.has_value());
    int count = 0;
    for (std::string line; std::getline(lines, line); ++count) EXPECT_EQ(line.rfind(*first + ", ", 0), 0U) << line;
    EXPECT_EQ(count, 12);
}

}  // namespace
