#include "platform/dispatch.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <atomic>
#include <chrono>
#include <future>
#include <string>
#include <thread>
#include <vector>

#include "tests/support/shell.h"

namespace {

using namespace std::chrono_literals;
namespace mainQueue = platform::mainQueue;
namespace userInitiatedQueue = platform::userInitiatedQueue;

// Runs the main queue until work calls endMainQueue().
void runMainQueue() { EXPECT_EQ(QCoreApplication::exec(), 0); }
void endMainQueue() { QCoreApplication::exit(0); }

TEST(MainQueue, DelayedWorkRunsWhenItIsDueAndDelaysNoOther) {
    std::vector<std::chrono::milliseconds> order;
    for (const auto delay : {400ms, 100ms, 300ms, 200ms}) {
        const auto posted = std::chrono::steady_clock::now();
        mainQueue::asyncAfter(delay, [&order, delay, posted] {
            EXPECT_GE(std::chrono::steady_clock::now() - posted, delay);
            order.push_back(delay);
            if (delay == 400ms) endMainQueue();
        });
    }
    mainQueue::async([&] { order.push_back(0ms); });
    runMainQueue();
    EXPECT_EQ(order, (std::vector<std::chrono::milliseconds>{0ms, 100ms, 200ms, 300ms, 400ms}));
}

// The main thread is busy until the first work is due. If the delay counted from then, the second work would run first.
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
    std::thread([mainThread] {
        mainQueue::asyncAfter(10ms, [mainThread] {
            EXPECT_EQ(std::this_thread::get_id(), mainThread);
            endMainQueue();
        });
    }).join();
    runMainQueue();
}

TEST(UserInitiatedQueue, BlockedWorkDelaysNoOther) {
    std::promise<void> release;
    const std::shared_future<void> released = release.get_future().share();
    std::atomic<int> over = 0;
    for (int piece = 0; piece < 64; ++piece) {
        userInitiatedQueue::async([&over, released] {
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
}

TEST(DispatchEnd, WaitsForNoWorkAndRunsNoPendingWork) {
    const testSupport::ShellResult result = testSupport::shell(CHILD_PATH);
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.output, "ended\n");
}

}  // namespace

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    const QCoreApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
