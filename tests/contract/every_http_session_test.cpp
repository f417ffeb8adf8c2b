// Tests for the real HTTP session and the fake alike. All requests fail.
#include <gtest/gtest.h>

#include <future>
#include <thread>
#include <utility>
#include <vector>

#include "platform/http.h"
#include "tests/contract/http_requests.h"

namespace {

using namespace httpContract;

TEST(EveryHttpSession, CallsEveryHandlerOnOneBackgroundThread) {
    // Counts per thread, since a new thread may reuse the id of an earlier one.
    static thread_local int handlersOfThisThread = 0;
    std::vector<int> counts;
    const auto count = [&counts](const auto&) { counts.push_back(++handlersOfThisThread); };

    platform::httpSession::start(post("path"), count);
    std::thread([&] { platform::httpSession::start(post("path"), count); }).join();
    platform::httpSession::start(post("path"), count);
    const Result last = resultOf(post("path"));

    EXPECT_EQ(counts, (std::vector<int>{1, 2, 3}));
    EXPECT_NE(last.thread, std::this_thread::get_id());
}

TEST(EveryHttpSession, CallsEachHandlerOnceInTheOrderOfTheRequests) {
    std::vector<int> calls;
    for (const int number : {0, 1, 2}) {
        platform::httpSession::start(post("path"), [&calls, number](const auto&) { calls.push_back(number); });
    }
    // Handlers run one after another, so a second call would come before the last of these.
    for (int round = 0; round < 3; ++round) resultOf(post("path"));

    EXPECT_EQ(calls, (std::vector<int>{0, 1, 2}));
}

TEST(EveryHttpSession, ReturnsBeforeTheHandlerIsCalled) {
    std::promise<void> returned;
    std::promise<bool> seen;

    platform::httpSession::start(post("path"), [&](const auto&) {
        seen.set_value(returned.get_future().wait_for(longestWait) == std::future_status::ready);
    });
    returned.set_value();

    EXPECT_TRUE(seen.get_future().get());
}

TEST(EveryHttpSession, TakesARequestFromWithinAHandler) {
    std::promise<std::future<Result>> started;

    platform::httpSession::start(post("path"), [&](const auto&) { started.set_value(send(post("path"))); });

    EXPECT_TRUE(resultOf(started.get_future().get()).error.has_value());
}

}  // namespace
