#include "platform/dispatch.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <atomic>
#include <future>
#include <map>
#include <thread>
#include <vector>

namespace {

using namespace std::chrono_literals;
using platform::Work;
namespace mainQueue = platform::mainQueue;
namespace userInitiatedQueue = platform::userInitiatedQueue;

// Runs the main queue until `last` ends it.
void runMainQueue() { EXPECT_EQ(QCoreApplication::exec(), 0); }
void endMainQueue() { QCoreApplication::exit(0); }

TEST(MainQueue, RunsOnTheMainThreadInTheOrderOfPosting) {
    const std::thread::id mainThread = std::this_thread::get_id();
    std::vector<int> order;
    for (int piece = 0; piece < 100; ++piece) {
        mainQueue::async([&order, piece, mainThread] {
            EXPECT_EQ(std::this_thread::get_id(), mainThread);
            order.push_back(piece);
        });
    }
    mainQueue::async(endMainQueue);
    EXPECT_TRUE(order.empty()) << "ran before the queue did";
    runMainQueue();

    ASSERT_EQ(order.size(), 100U);
    for (int piece = 0; piece < 100; ++piece) EXPECT_EQ(order[static_cast<std::size_t>(piece)], piece);
}

TEST(MainQueue, KeepsEachThreadsOrder) {
    std::map<int, std::vector<int>> order;
    std::vector<std::thread> threads;
    std::atomic<int> left = 4;
    for (int poster = 0; poster < 4; ++poster) {
        threads.emplace_back([&, poster] {
            for (int piece = 0; piece < 200; ++piece) {
                mainQueue::async([&order, poster, piece] { order[poster].push_back(piece); });
            }
            mainQueue::async([&left] {
                if (--left == 0) endMainQueue();
            });
        });
    }
    runMainQueue();
    for (std::thread& thread : threads) thread.join();

    for (const auto& [poster, pieces] : order) {
        ASSERT_EQ(pieces.size(), 200U) << poster;
        EXPECT_TRUE(std::is_sorted(pieces.begin(), pieces.end())) << poster;
    }
    EXPECT_EQ(order.size(), 4U);
}

TEST(MainQueue, WorkMayPostWork) {
    std::vector<int> order;
    mainQueue::async([&] {
        mainQueue::async([&] {
            order.push_back(2);
            endMainQueue();
        });
        order.push_back(1);
    });
    runMainQueue();
    EXPECT_EQ(order, (std::vector<int>{1, 2}));
}

TEST(MainQueue, DelayedWorkIsNeverEarlyAndHoldsNothingBack) {
    const auto start = std::chrono::steady_clock::now();
    std::vector<std::string> order;
    mainQueue::asyncAfter(300ms, [&] {
        EXPECT_GE(std::chrono::steady_clock::now() - start, 300ms);
        order.emplace_back("late");
        endMainQueue();
    });
    mainQueue::asyncAfter(50ms, [&] {
        EXPECT_GE(std::chrono::steady_clock::now() - start, 50ms);
        order.emplace_back("soon");
    });
    mainQueue::async([&] { order.emplace_back("now"); });
    runMainQueue();
    EXPECT_EQ(order, (std::vector<std::string>{"now", "soon", "late"}));
}

// The main thread is busy past the first deadline; by then a timer that only started now would be the later one.
TEST(MainQueue, ADelayCountsFromTheCallWhileTheMainThreadIsBusy) {
    std::vector<std::string> order;
    mainQueue::async([&order] {
        const auto deadline = std::chrono::steady_clock::now() + 200ms;
        mainQueue::asyncAfter(200ms, [&order] { order.emplace_back("first"); });
        while (std::chrono::steady_clock::now() < deadline) std::this_thread::yield();
        mainQueue::asyncAfter(100ms, [&order] {
            order.emplace_back("second");
            endMainQueue();
        });
    });
    runMainQueue();
    EXPECT_EQ(order, (std::vector<std::string>{"first", "second"}));
}

TEST(MainQueue, DelayedWorkMayBePostedFromAnyThread) {
    const std::thread::id mainThread = std::this_thread::get_id();
    std::thread poster([mainThread] {
        mainQueue::asyncAfter(10ms, [mainThread] {
            EXPECT_EQ(std::this_thread::get_id(), mainThread);
            endMainQueue();
        });
    });
    poster.join();
    runMainQueue();
}

TEST(UserInitiatedQueue, RunsOffTheCallersThread) {
    std::promise<std::thread::id> ran;
    userInitiatedQueue::async([&ran] { ran.set_value(std::this_thread::get_id()); });
    EXPECT_NE(ran.get_future().get(), std::this_thread::get_id());
}

TEST(UserInitiatedQueue, WorkThatBlocksHoldsNoOtherBack) {
    std::promise<void> release;
    const std::shared_future<void> released = release.get_future().share();
    std::atomic<int> blocked = 0;
    std::atomic<int> over = 0;
    for (int piece = 0; piece < 64; ++piece) {
        userInitiatedQueue::async([&blocked, &over, released] {
            ++blocked;
            released.wait();
            ++over;
        });
    }
    std::promise<void> last;
    userInitiatedQueue::async([&last] { last.set_value(); });
    last.get_future().wait();
    EXPECT_EQ(over, 0);

    release.set_value();
    while (over < 64) std::this_thread::yield();
    EXPECT_EQ(blocked, 64);
}

TEST(UserInitiatedQueue, WorkMayPostToTheMainQueue) {
    const std::thread::id mainThread = std::this_thread::get_id();
    userInitiatedQueue::async([mainThread] {
        mainQueue::async([mainThread] {
            EXPECT_EQ(std::this_thread::get_id(), mainThread);
            endMainQueue();
        });
    });
    runMainQueue();
}

}  // namespace

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    const QCoreApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
