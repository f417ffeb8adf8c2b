// Time-outs.
#include <gtest/gtest.h>

#include <chrono>
#include <future>
#include <string>
#include <utility>
#include <vector>

#include "tests/contract/http_requests.h"
#include "tests/contract/idle_socket.h"
#include "tests/support/scripted_server.h"

namespace {

using namespace std::chrono_literals;
using namespace httpContract;
using namespace testSupport;

using Clock = std::chrono::steady_clock;

TEST(HttpSession, TimesOutWhenNothingComesForTheInterval) {
    const std::vector<std::pair<std::string, Script>> cases{
        {"no answer", {WaitUntilClientHasGone{}}},
        {"half a header", {Send{"HTTP/1.1 200 OK\r\nConte"}, WaitUntilClientHasGone{}}},
        {"header alone", {Send{"HTTP/1.1 200 OK\r\nContent-Length: 8\r\n\r\n"}, WaitUntilClientHasGone{}}},
        {"half a body", {Send{"HTTP/1.1 200 OK\r\nContent-Length: 8\r\n\r\nthe"}, WaitUntilClientHasGone{}}},
        {"half a chunk",
         {Send{"HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n8\r\nthe"}, WaitUntilClientHasGone{}}},
        {"body without end", {Send{"HTTP/1.1 200 OK\r\n\r\nthe body"}, WaitUntilClientHasGone{}}},
    };
    for (const auto& [name, script] : cases) {
        SCOPED_TRACE(name);
        const ScriptedServer server(always(script));

        const auto begin = Clock::now();
        const Result result = resultOf(post(server.url("/"), "{}", 1s));

        EXPECT_GE(Clock::now() - begin, 1s);
        expectTimedOut(result);
        EXPECT_TRUE(server.waitForEndedConnections(1));
        EXPECT_EQ(server.requests().size(), 1u);
    }
}

TEST(HttpSession, RestartsTheIntervalWithEveryHeaderLineAndByteOfTheBody) {
    Script script;
    for (const std::string line : {"HTTP/1.1 200 OK\r\n", "X: 1\r\n", "X: 2\r\n", "Content-Length: 13\r\n", "\r\n"}) {
        script.push_back(SendDripping{line.substr(0, 1), 300ms});
        script.push_back(Send{line.substr(1)});
    }
    script.push_back(SendDripping{"steady, slow!", 200ms});
    const ScriptedServer server(always(script));

    const auto begin = Clock::now();
    const Result result = resultOf(post(server.url("/"), "{}", 1s));

    EXPECT_GE(Clock::now() - begin, 4s);
    expectAnswer(result, 200, "steady, slow!");
}

TEST(HttpSession, RestartsTheIntervalOnlyWithAWholeHeaderLine) {
    const ScriptedServer server(always({Send{"HTTP/1.1 200 OK\r\nContent-Length: 0\r\n"},
                                        SendDripping{"X: " + std::string(40, 'x'), 50ms}, Send{"\r\n\r\n"}}));

    expectTimedOut(resultOf(post(server.url("/"), "{}", 1s)));
}

TEST(HttpSession, RestartsTheIntervalWithEveryByteSent) {
    constexpr std::size_t size = std::size_t{64} << 20;
    const IdleSocket slow(IdleSocket::Kind::listening);

    const auto begin = Clock::now();
    std::future<Result> result = send(post(slow.url(), std::string(size, 'x'), 2s));
    slow.readSlowlyThenAnswer(size, answerBytes(200, "at last"));

    EXPECT_GE(Clock::now() - begin, 3s);
    expectAnswer(resultOf(std::move(result)), 200, "at last");
}

TEST(HttpSession, CountsTheIntervalFromTheLastByte) {
    const ScriptedServer server(always({Send{"HTTP/1.1 200 OK\r\nContent-Length: 99\r\n\r\n"},
                                        SendDripping{"12345678", 250ms}, WaitUntilClientHasGone{}}));

    const auto begin = Clock::now();
    const Result result = resultOf(post(server.url("/"), "{}", 1s));

    EXPECT_GE(Clock::now() - begin, 3s);
    expectTimedOut(result);
}

TEST(HttpSession, TimesOutWhileConnecting) {
    IdleSocket full(IdleSocket::Kind::listening);
    if (!full.fillQueue()) GTEST_SKIP() << "this system leaves no connection waiting";

    expectTimedOut(resultOf(post(full.url(), "{}", 1s)));
}

// Bytes of the TLS handshake do not restart the interval.
TEST(HttpSession, TimesOutInATlsHandshakeThatDrips) {
    const ScriptedServer slow(always({SendDripping{"\x16\x03\x03\x3F" + std::string(500, 'x'), 200ms}}));

    expectTimedOut(resultOf(post("https" + slow.url("/").substr(4), "{}", 2s)));
}

TEST(HttpSession, TimesOutWhileSending) {
    const IdleSocket deaf(IdleSocket::Kind::listening);

    const auto begin = Clock::now();
    const Result result = resultOf(post(deaf.url(), std::string(32 * 1024 * 1024, 'x'), 1s));

    EXPECT_GE(Clock::now() - begin, 1s);
    expectTimedOut(result);
}

}  // namespace
