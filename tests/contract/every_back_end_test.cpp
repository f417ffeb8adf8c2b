// Tests for the program's back ends and the fakes alike.
#include "tests/contract/every_back_end.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <map>
#include <mutex>
#include <regex>
#include <set>
#include <thread>

#include "platform/browser.h"
#include "platform/date.h"
#include "platform/dispatch.h"
#include "platform/log.h"
#include "platform/machine_uuid.h"
#include "platform/process.h"
#include "platform/user_defaults.h"
#include "platform/uuid.h"

using namespace platform;

namespace {

void onFourThreads(const std::function<void(int)>& action) {
    std::vector<std::thread> threads;
    for (int number = 0; number < 4; ++number) threads.emplace_back([&action, number] { action(number); });
    for (std::thread& thread : threads) thread.join();
}

TEST(EveryMainQueue, RunsWorkOnTheMainThreadInTheOrderOfPosting) {
    const std::thread::id mainThread = std::this_thread::get_id();
    std::vector<int> order;
    std::vector<int> expected;
    for (int piece = 0; piece < 50; ++piece) {
        expected.push_back(piece);
        const auto post = [&order, piece, mainThread] {
            mainQueue::async([&order, piece, mainThread] {
                EXPECT_EQ(std::this_thread::get_id(), mainThread);
                order.push_back(piece);
            });
        };
        if (piece % 2 == 0) {
            post();
        } else {
            std::thread(post).join();
        }
    }
    EXPECT_TRUE(order.empty()) << "ran before the queue did";
    everyBackEnd::runQueuesUntil([&] { return order.size() == 50; });
    EXPECT_EQ(order, expected);
}

TEST(EveryMainQueue, KeepsTheOrderOfEachPostingThread) {
    std::map<int, std::vector<int>> order;
    std::atomic<int> left = 4;
    std::thread posters([&] {
        onFourThreads([&](int poster) {
            for (int piece = 0; piece < 200; ++piece) {
                mainQueue::async([&order, poster, piece] { order[poster].push_back(piece); });
            }
            mainQueue::async([&left] { --left; });
        });
    });
    everyBackEnd::runQueuesUntil([&] { return left == 0; });
    posters.join();
    EXPECT_EQ(order.size(), 4U);
    for (const auto& [poster, pieces] : order) {
        EXPECT_EQ(pieces.size(), 200U) << poster;
        EXPECT_TRUE(std::is_sorted(pieces.begin(), pieces.end())) << poster;
    }
}

TEST(EveryMainQueue, AppendsTheWorkThatWorkPosts) {
    std::vector<std::string> order;
    mainQueue::async([&order] {
        mainQueue::async([&order] { order.emplace_back("posted by the first"); });
        order.emplace_back("first");
    });
    mainQueue::async([&order] { order.emplace_back("second"); });
    everyBackEnd::runQueuesUntil([&] { return order.size() == 3; });
    EXPECT_EQ(order, (std::vector<std::string>{"first", "second", "posted by the first"}));
}

TEST(EveryUserInitiatedQueue, RunsOffTheMainThreadAndMayPostToIt) {
    const std::thread::id mainThread = std::this_thread::get_id();
    bool done = false;
    userInitiatedQueue::async([&] {
        EXPECT_NE(std::this_thread::get_id(), mainThread);
        mainQueue::async([&] {
            EXPECT_EQ(std::this_thread::get_id(), mainThread);
            done = true;
        });
    });
    everyBackEnd::runQueuesUntil([&] { return done; });
}

TEST(EveryUserDefaults, ReturnTheTextStoredLast) {
    EXPECT_EQ(userDefaults::string("key"), std::nullopt);
    for (const std::string text : {"one", "two", "", " a, b\n", "\xF0\x9F\x94\x8D"}) {
        userDefaults::setString("key", text);
        EXPECT_EQ(userDefaults::string("key"), text);
    }
    userDefaults::setString("other", "else");
    EXPECT_EQ(userDefaults::string("key"), "\xF0\x9F\x94\x8D");
}

TEST(EveryProcess, ReturnsTheOutputAndNothingForAMissingCommand) {
    everyBackEnd::makeEcho();
    const std::vector<std::string> arguments = {"a", "b c"};
    EXPECT_EQ(standardOutputOf("/bin/echo", arguments), "a b c\n");
    EXPECT_EQ(standardOutputOf("/nowhere/at/all", arguments), std::nullopt);
}

TEST(EveryBrowser, ReportsWhetherThePageOpenedAndRefusesAUrlWithoutScheme) {
    const Url page = Url::parse("http://e.example/").value();
    everyBackEnd::openPages(false);
    EXPECT_FALSE(openInBrowser(page));
    everyBackEnd::openPages(true);
    EXPECT_TRUE(openInBrowser(page));
    for (const char* address : {"/etc/passwd", "e.example", "?q", "#f"}) {
        EXPECT_FALSE(openInBrowser(Url::parse(address).value())) << address;
    }
}

TEST(EveryMachineUuid, IsTheSameAtEachCall) { EXPECT_EQ(platformUuid(), platformUuid()); }

TEST(EveryRandomUuid, IsAnUpperCaseVersion4UuidAndUniqueOnAnyThread) {
    const std::regex form("[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-[0-9A-F]{12}");
    std::mutex mutex;
    std::set<std::string> all;
    onFourThreads([&](int) {
        for (int drawn = 0; drawn < 2'500; ++drawn) {
            std::string uuid = randomUuid();
            const std::lock_guard lock(mutex);
            all.insert(std::move(uuid));
        }
    });
    EXPECT_EQ(all.size(), 10'000U);
    for (const std::string& uuid : all) ASSERT_TRUE(std::regex_match(uuid, form)) << uuid;
}

TEST(EveryDate, IsFormattedOnAnyThread) {
    const std::regex form("[0-9]{4}-[0-9]{2}-[0-9]{2}");
    onFourThreads([&](int) {
        for (int call = 0; call < 20; ++call) {
            const std::string date = currentDate("yyyy-MM-dd");
            EXPECT_TRUE(std::regex_match(date, form)) << date;
        }
    });
}

TEST(EveryLog, WritesEachMessageAndValueAsALineFromAnyThread) {
    const std::vector<std::string> lines = everyBackEnd::linesOf([] {
        log("alone");
        log("message ", "value");
        onFourThreads([](int number) {
            for (int line = 0; line < 50; ++line) log("thread ", std::to_string(number));
        });
    });
    ASSERT_EQ(lines.size(), 202U);
    EXPECT_EQ(lines[0], "alone");
    EXPECT_EQ(lines[1], "message value");
    for (const char* line : {"thread 0", "thread 1", "thread 2", "thread 3"}) {
        EXPECT_EQ(std::count(lines.begin(), lines.end(), line), 50) << line;
    }
}

}  // namespace
