// What every HTTP session keeps, the fake included. The requests fail in both.
#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <thread>
#include <utility>
#include <vector>

#include "platform/http.h"
#include "tests/contract/http_requests.h"

namespace {

using namespace httpContract;

TEST(EveryHttpSession, CallsEveryHandlerOnOneThreadOfItsOwn) {
    const Result first = resultOf(post("path"));
    std::thread::id callersThread;
    std::future<Result> fromElsewhere;
    std::thread([&] {
        callersThread = std::this_thread::get_id();
        fromElsewhere = send(post("path"));
    }).join();
    const Result elsewhere = resultOf(std::move(fromElsewhere));

    EXPECT_NE(first.thread, std::this_thread::get_id());
    EXPECT_NE(first.thread, callersThread);
    EXPECT_EQ(elsewhere.thread, first.thread);
}

TEST(EveryHttpSession, CallsEachHandlerOnceInTheOrderOfTheRequests) {
    std::vector<int> calls;
    for (const int number : {0, 1, 2}) {
        platform::httpSession::start(post("path"), [&calls, number](const auto&) { calls.push_back(number); });
    }
    // Handlers run one after another, so a second call would have run before the last of these.
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
