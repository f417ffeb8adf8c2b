// Concurrent requests and the thread of the handlers.
#include "platform/http.h"

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <future>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "tests/contract/http_requests.h"
#include "tests/contract/idle_socket.h"
#include "tests/support/scripted_server.h"

namespace {

using namespace std::chrono_literals;
using namespace httpContract;
using namespace testSupport;

TEST(HttpSession, CallsTheHandlersOfAnswersAndErrorsOnOneThread) {
    const ScriptedServer server(always({Send{answerBytes(200, "")}}));

    EXPECT_EQ(resultOf(post(server.url("/"))).thread, resultOf(post("path")).thread);
}

TEST(HttpSession, OneRequestDoesNotDelayAnother) {
    const ScriptedServer silent(always({HoldOpen{}}));
    const ScriptedServer server(always({Send{answerBytes(200, "quick")}}));
    const IdleSocket full(IdleSocket::Kind::listening);

    std::future<Result> hanging = send(post(silent.url("/"), "{}", 60s));
    std::future<Result> sending = send(post(full.url(), std::string(32 * 1024 * 1024, 'x'), 60s));
    ASSERT_TRUE(silent.waitForRequests(1));

    expectAnswer(resultOf(post(server.url("/"))), 200, "quick");
    EXPECT_EQ(hanging.wait_for(0s), std::future_status::timeout);
    EXPECT_EQ(sending.wait_for(0s), std::future_status::timeout);
}

TEST(HttpSession, CarriesOutManyRequestsAtOnce) {
    const ScriptedServer server(
        [](const RecordedRequest& request) { return Script{Send{answerBytes(200, "answer to " + request.body())}}; });

    std::vector<std::future<Result>> pending;
    for (int number = 0; number < 50; ++number) pending.push_back(send(post(server.url("/"), std::to_string(number))));

    for (int number = 0; number < 50; ++number) {
        const auto index = static_cast<std::size_t>(number);
        expectAnswer(resultOf(std::move(pending[index])), 200, "answer to " + std::to_string(number));
    }
    EXPECT_EQ(server.requests().size(), 50u);
}

TEST(HttpSession, AcceptsRequestsFromSeveralThreads) {
    const ScriptedServer server(always({Send{answerBytes(200, "here")}}));

    std::vector<std::thread> threads;
    for (int number = 0; number < 4; ++number) {
        threads.emplace_back([&] {
            for (int round = 0; round < 5; ++round) expectAnswer(resultOf(post(server.url("/"))), 200, "here");
        });
    }
    for (std::thread& thread : threads) thread.join();

    EXPECT_EQ(server.requests().size(), 20u);
}

TEST(HttpSession, ContinuesAfterAnExceptionInAHandler) {
    const ScriptedServer server(always({Send{answerBytes(200, "fine")}}));
    platform::httpSession::start(post(server.url("/")), [](const auto&) { throw std::bad_alloc(); });
    expectAnswer(resultOf(post(server.url("/"))), 200, "fine");
    expectAnswer(resultOf(post(server.url("/"))), 200, "fine");
}

TEST(HttpSession, DoesNotTimeOutIfBytesArriveWhileAHandlerRuns) {
    const std::string header = "HTTP/1.1 200 OK\r\nContent-Length: 99\r\n\r\n";
    const ScriptedServer slow(
        always({Send{header}, SendDripping{std::string(9, 'x'), 200ms}, Send{std::string(90, 'y')}}));
    const ScriptedServer quick(always({Send{answerBytes(200, "")}}));

    std::future<Result> dripping = send(post(slow.url("/"), "{}", 1s));
    ASSERT_TRUE(slow.waitForRequests(1));
    platform::httpSession::start(post(quick.url("/")),
                                 [&](const auto&) { EXPECT_TRUE(slow.waitForEndedConnections(1)); });

    expectAnswer(resultOf(std::move(dripping)), 200, std::string(9, 'x') + std::string(90, 'y'));
}

TEST(HttpSession, DoesNotCountTheTimeInWhichAHandlerRuns) {
    const ScriptedServer slow(always({SendDripping{"H", 1300ms}, Send{answerBytes(200, "late").substr(1)}}));
    const ScriptedServer quick(always({Send{answerBytes(200, "")}}));

    std::future<Result> waiting = send(post(slow.url("/"), "{}", 1s));
    ASSERT_TRUE(slow.waitForRequests(1));
    platform::httpSession::start(post(quick.url("/")),
                                 [](const auto&) { std::promise<void>().get_future().wait_for(1100ms); });

    expectAnswer(resultOf(std::move(waiting)), 200, "late");
}

TEST(HttpSession, BlocksSignalsOnTheDeliveryThread) {
    std::promise<sigset_t> blocked;

    platform::httpSession::start(post("path"), [&](const auto&) {
        sigset_t mask;
        pthread_sigmask(SIG_BLOCK, nullptr, &mask);
        blocked.set_value(mask);
    });

    const sigset_t mask = blocked.get_future().get();
    for (const int signal : {SIGPIPE, SIGTERM, SIGINT, SIGCHLD}) EXPECT_EQ(sigismember(&mask, signal), 1) << signal;
}

}  // namespace
