// Answers and their bodies.
#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "tests/contract/http_requests.h"
#include "tests/support/scripted_server.h"

namespace {

using namespace httpContract;
using namespace testSupport;

TEST(HttpSession, DeliversEveryStatusWithItsBody) {
    for (const int statusCode : {200, 201, 202, 206, 226, 299, 400, 401, 402, 403, 404, 405, 407,
                                 409, 410, 418, 429, 451, 499, 500, 501, 502, 503, 599, 600, 999}) {
        SCOPED_TRACE(statusCode);
        const ScriptedServer server(always({Send{answerBytes(statusCode, "the body")}}));

        expectAnswer(resultOf(post(server.url("/"))), statusCode, "the body");

        EXPECT_EQ(server.requests().size(), 1u);
    }
}

TEST(HttpSession, DeliversAChallengeAfterOneRequestWhenTheUrlHasNoCredentials) {
    const std::vector<std::pair<int, std::string>> challenges{
        {401, "WWW-Authenticate: Basic realm=\"r\""},
        {401, "WWW-Authenticate: Digest realm=\"r\", nonce=\"n\", qop=\"auth\""},
        {401, "WWW-Authenticate: Negotiate"},
        {401, "WWW-Authenticate: NTLM"},
        {401, "WWW-Authenticate: Unknown x=y"},
        {407, "Proxy-Authenticate: Basic realm=\"r\""},
    };
    for (const auto& [statusCode, challenge] : challenges) {
        SCOPED_TRACE(challenge);
        const ScriptedServer server(always({Send{answerBytes(statusCode, "who are you?", {challenge})}}));

        expectAnswer(resultOf(post(server.url("/"))), statusCode, "who are you?");

        EXPECT_EQ(server.connections().size(), 1u);
        EXPECT_EQ(server.requests().size(), 1u);
    }
}

TEST(HttpSession, DeliversAnEmptyBodyIfTheAnswerHasNone) {
    const std::vector<std::pair<int, std::string>> answers{
        {200, "HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r\n"},
        {200, "HTTP/1.1 200 OK\r\n\r\n"},
        {200, "HTTP/1.0 200 OK\r\n\r\n"},
        {200, "HTTP/1.1 200\r\nTransfer-Encoding: chunked\r\n\r\n0\r\n\r\n"},
        {204, "HTTP/1.1 204 No Content\r\n\r\n"},
        {304, "HTTP/1.1 304 Not Modified\r\n\r\n"},
        {304, "HTTP/1.1 304 Not Modified\r\nContent-Length: 5\r\n\r\n"},
        {304, "HTTP/1.1 304 Not Modified\r\nLocation: /other\r\n\r\n"},
    };
    for (const auto& [statusCode, bytes] : answers) {
        SCOPED_TRACE(bytes);
        const ScriptedServer server(always({Send{bytes}}));

        expectAnswer(resultOf(post(server.url("/"))), statusCode, "");
    }
}

TEST(HttpSession, ReadsABodyWithAnyKindOfEnd) {
    const std::vector<std::string> answers{
        "HTTP/1.1 200 OK\r\nContent-Length: 8\r\n\r\nthe body",
        "HTTP/1.1 200 OK\r\nContent-Length: 8\r\n\r\nthe body and more",
        "HTTP/1.1 200 OK\r\n\r\nthe body",
        "HTTP/1.0 200 OK\r\n\r\nthe body",
        "HTTP/1.1 200 OK\nContent-Length: 8\n\nthe body",
        "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n4\r\nthe \r\n4;x=y\r\nbody\r\n0\r\n\r\n",
        "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n8\r\nthe body\r\n0\r\nX-Trailer: t\r\n\r\n",
    };
    for (const std::string& bytes : answers) {
        SCOPED_TRACE(bytes);
        const ScriptedServer server(always({Send{bytes}}));

        expectAnswer(resultOf(post(server.url("/"))), 200, "the body");
    }
}

TEST(HttpSession, DeliversAnAnswerWithALongHeaderField) {
    const ScriptedServer server(always({Send{answerBytes(200, "the body", {"X-Long: " + std::string(90'000, 'x')})}}));

    expectAnswer(resultOf(post(server.url("/"))), 200, "the body");
}

TEST(HttpSession, DeliversAnAnswerOfKnownLengthWhileTheConnectionStaysOpen) {
    const ScriptedServer server(always({Send{answerBytes(200, "the body")}, WaitUntilClientHasGone{}}));

    expectAnswer(resultOf(post(server.url("/"))), 200, "the body");

    EXPECT_TRUE(server.waitForEndedConnections(1));
}

TEST(HttpSession, RefusesEndlessInterimAnswers) {
    std::string sixteen;
    for (int count = 0; count < 16; ++count) sixteen += "HTTP/1.1 103 Early Hints\r\n\r\n";
    const ScriptedServer patient(always({Send{sixteen + answerBytes(200, "at last")}}));
    expectAnswer(resultOf(post(patient.url("/"))), 200, "at last");

    const ScriptedServer endless(always({testSupport::SendEndlessly{"HTTP/1.1 103 Early Hints\r\n\r\n"}}));
    expectError(resultOf(post(endless.url("/"))), -1017, "cannot parse response");
}

TEST(HttpSession, SkipsInterimAnswers) {
    const auto interim = [](const std::string& status) {
        return "HTTP/1.1 " + status + "\r\nContent-Encoding: gzip\r\nLocation: /elsewhere\r\n\r\n";
    };
    for (const std::string& early :
         {interim("100 Continue"), interim("102 Processing"), interim("103 Early Hints"),
          interim("100 Continue") + interim("103 Early Hints") + interim("103 Early Hints")}) {
        SCOPED_TRACE(early);
        const ScriptedServer server(always({Send{early + answerBytes(200, "final")}}));

        expectAnswer(resultOf(post(server.url("/"))), 200, "final");

        EXPECT_EQ(server.requests().size(), 1u);
    }
}

TEST(HttpSession, DeliversALargeBody) {
    std::string body(std::size_t{16} << 20, '\0');
    for (std::size_t index = 0; index < body.size(); ++index) body[index] = static_cast<char>(index * 31 + index / 256);
    const ScriptedServer server(always({Send{answerBytes(200, body)}}));

    const Result result = resultOf(post(server.url("/")));

    ASSERT_TRUE(result.answer.has_value());
    EXPECT_TRUE(result.answer->body == body);
}

TEST(HttpSession, DeliversABodyOfTheLargestSize) {
    const ScriptedServer server(always({Send{"HTTP/1.1 200 OK\r\nContent-Length: 268435456\r\n\r\n"},
                                        SendEndlessly{std::string(std::size_t{1} << 20, 'x')}}));

    const Result result = resultOf(post(server.url("/")));

    ASSERT_TRUE(result.answer.has_value());
    EXPECT_EQ(result.answer->body.size(), 268435456u);
}

TEST(HttpSession, ReportsATooLargeOrEndlessBody) {
    const std::string mebibyte(std::size_t{1} << 20, 'x');
    const std::string chunk = "100000\r\n" + mebibyte + "\r\n";
    const std::vector<std::pair<std::string, std::string>> answers{
        {"HTTP/1.1 200 OK\r\n\r\n", mebibyte},
        {"HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n", chunk},
        {"HTTP/1.1 500 Oops\r\nContent-Length: 268435457\r\n\r\n", mebibyte},
    };
    for (const auto& [header, body] : answers) {
        SCOPED_TRACE(header);
        const ScriptedServer server(always({Send{header}, SendEndlessly{body}}));

        expectError(resultOf(post(server.url("/"))), -1103, "resource exceeds maximum size");

        EXPECT_TRUE(server.waitForEndedConnections(1));
        EXPECT_EQ(server.requests().size(), 1u);
    }
}

TEST(HttpSession, ReportsAnEndlessTrailer) {
    const ScriptedServer server(always(
        {Send{"HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n2\r\n{}\r\n0\r\n"}, SendEndlessly{"X: y\r\n"}}));

    const Result result = resultOf(post(server.url("/")));

    ASSERT_TRUE(result.error);
    // Newer versions of libcurl have a limit of their own, with another error.
    EXPECT_NE(result.error->localizedDescription, "The request timed out.");

    EXPECT_TRUE(server.waitForEndedConnections(1));
}

// libcurl reads and discards the body of a redirect.
TEST(HttpSession, EndsARedirectWithAnEndlessBody) {
    const std::string mebibyte(std::size_t{1} << 20, 'x');
    const ScriptedServer server(always({Send{"HTTP/1.1 302 Found\r\nLocation: /\r\nTransfer-Encoding: chunked\r\n\r\n"},
                                        SendEndlessly{"100000\r\n" + mebibyte + "\r\n"}}));

    EXPECT_TRUE(resultOf(post(server.url("/"), "{}", std::chrono::seconds(2))).error);

    EXPECT_TRUE(server.waitForEndedConnections(1));
    EXPECT_EQ(server.requests().size(), 1u);
}

}  // namespace
