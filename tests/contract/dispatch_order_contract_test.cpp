#include "platform/dispatch.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <future>
#include <thread>
#include <vector>

namespace {

using namespace std::chrono_literals;
namespace mainQueue = platform::mainQueue;
namespace userInitiatedQueue = platform::userInitiatedQueue;

void runMainQueue() { EXPECT_EQ(QCoreApplication::exec(), 0); }
void endMainQueue() { QCoreApplication::exit(0); }

TEST(MainQueueOrder, IsThatOfPostingWhicheverThreadPosts) {
    std::vector<int> order;
    for (int piece = 0; piece < 50; ++piece) {
        std::thread([&order, piece] { mainQueue::async([&order, piece] { order.push_back(piece); }); }).join();
    }
    mainQueue::async([&order] { order.push_back(50); });
    std::thread([] { mainQueue::async(endMainQueue); }).join();
    runMainQueue();

    ASSERT_EQ(order.size(), 51U);
    for (int piece = 0; piece <= 50; ++piece) EXPECT_EQ(order[static_cast<std::size_t>(piece)], piece);
}

TEST(MainQueueOrder, PutsWhatWorkPostsBehindAllThatWaits) {
    std::vector<std::string> order;
    mainQueue::async([&order] {
        mainQueue::async([&order] {
            order.emplace_back("posted by the first");
            endMainQueue();
        });
        order.emplace_back("first");
    });
    mainQueue::async([&order] { order.emplace_back("second"); });
    mainQueue::async([&order] { order.emplace_back("third"); });
    runMainQueue();
    EXPECT_EQ(order, (std::vector<std::string>{"first", "second", "third", "posted by the first"}));
}

TEST(MainQueueOrder, OfDelayedWorkIsThatOfItsDueTime) {
    struct Piece {
        std::chrono::milliseconds delay;
        std::chrono::steady_clock::time_point posted;
    };
    std::vector<std::chrono::milliseconds> order;
    for (const auto delay : {400ms, 100ms, 300ms, 0ms, 200ms}) {
        mainQueue::asyncAfter(delay, [&order, piece = Piece{delay, std::chrono::steady_clock::now()}] {
            EXPECT_GE(std::chrono::steady_clock::now() - piece.posted, piece.delay);
            order.push_back(piece.delay);
            if (order.size() == 5) endMainQueue();
        });
    }
    runMainQueue();
    EXPECT_EQ(order, (std::vector<std::chrono::milliseconds>{0ms, 100ms, 200ms, 300ms, 400ms}));
}

TEST(MainQueueOrder, PostsFromDelayedWorkRunToo) {
    bool ran = false;
    mainQueue::asyncAfter(1ms, [&ran] {
        mainQueue::asyncAfter(1ms, [&ran] {
            ran = true;
            endMainQueue();
        });
    });
    runMainQueue();
    EXPECT_TRUE(ran);
}

// Each piece waits for one that it has posted itself: a fixed number of threads would run out of them.
void countDown(int left, std::promise<void>& reached) {
    if (left == 0) return reached.set_value();
    std::promise<void> next;
    std::future<void> done = next.get_future();
    userInitiatedQueue::async([left, &next] { countDown(left - 1, next); });
    done.wait();
    reached.set_value();
}

TEST(UserInitiatedQueueOrder, WorkMayWaitForWorkThatItPosts) {
    std::promise<void> reached;
    userInitiatedQueue::async([&reached] { countDown(64, reached); });
    EXPECT_EQ(reached.get_future().wait_for(30s), std::future_status::ready);
}

TEST(UserInitiatedQueueOrder, WorkMayWaitForTheMainThread) {
    bool ranOnMain = false;
    userInitiatedQueue::async([&ranOnMain] {
        std::promise<void> answered;
        mainQueue::async([&] {
            ranOnMain = true;
            answered.set_value();
        });
        answered.get_future().wait();
        mainQueue::async(endMainQueue);
    });
    runMainQueue();
    EXPECT_TRUE(ranOnMain);
}

}  // namespace

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    const QCoreApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
