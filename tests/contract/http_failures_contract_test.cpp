// Transport errors.
#include "platform/http.h"

#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "platform/curl/http_failure.h"
#include "tests/contract/http_requests.h"
#include "tests/contract/idle_socket.h"
#include "tests/support/scripted_server.h"

namespace {

using namespace std::string_literals;
using namespace httpContract;
using namespace testSupport;

TEST(HttpSession, ReportsARefusedConnection) {
    const IdleSocket refusing(IdleSocket::Kind::refusing);

    const Result result = resultOf(post(refusing.url()));

    expectError(result, -1004, "Could not connect to the server.");
    EXPECT_NE(result.error->details.find("(curl 7: "), std::string::npos) << result.error->details;
}

TEST(HttpSession, ReportsAHostThatIsNotFound) {
    const Result result = resultOf(post("http://name.invalid/"));

    ASSERT_TRUE(result.error.has_value());
    const std::string& details = result.error->details;
    EXPECT_TRUE(details.starts_with("NSURLErrorDomain -1003 ") || details.starts_with("NSURLErrorDomain -1009 "))
        << details;
}

TEST(HttpSession, ReportsALostConnectionAfterOneRequest) {
    const std::vector<std::pair<std::string, Script>> cases{
        {"closed without a byte", {}},
        {"reset without a byte", {Reset{}}},
        {"status line cut", {Send{"HTTP/1.1 200"}}},
        {"status line without its end", {Send{"HTTP/1.1 200 OK"}}},
        {"status line alone", {Send{"HTTP/1.1 200 OK\r\n"}}},
        {"half a header", {Send{"HTTP/1.1 200 OK\r\nContent-Type: te"}}},
        {"header without blank line", {Send{"HTTP/1.1 200 OK\r\nContent-Length: 0\r\n"}}},
        {"half an error's header", {Send{"HTTP/1.1 404 Not Found\r\nContent-Le"}}},
        {"interim answer alone", {Send{"HTTP/1.1 100 Continue\r\n\r\n"}}},
        {"interim answer, half a header", {Send{"HTTP/1.1 103 Early\r\nLink: a\r\n\r\nHTTP/1.1 200 OK\r\nConte"}}},
        {"another protocol", {Send{"HTTP/1.1 101 Switching Protocols\r\nUpgrade: x\r\n\r\nthe body"}}},
        {"header alone", {Send{"HTTP/1.1 200 OK\r\nContent-Length: 8\r\n\r\n"}}},
        {"header alone, reset", {Send{"HTTP/1.1 200 OK\r\nContent-Length: 8\r\n\r\n"}, Reset{}}},
        {"body cut", {Send{"HTTP/1.1 200 OK\r\nContent-Length: 8\r\n\r\nthe"}}},
        {"error's body cut", {Send{"HTTP/1.1 404 Not Found\r\nContent-Length: 8\r\n\r\nthe"}}},
        {"no chunk", {Send{"HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n"}}},
        {"chunk cut", {Send{"HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n8\r\nthe"}}},
        {"last chunk missing", {Send{"HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n3\r\nthe\r\n"}}},
        {"bad chunk size", {Send{"HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\nzz\r\nthe\r\n0\r\n\r\n"}}},
    };
    for (const auto& [name, script] : cases) {
        SCOPED_TRACE(name);
        const ScriptedServer server(always(script));

        expectConnectionLost(resultOf(post(server.url("/"))));

        EXPECT_EQ(server.connections().size(), 1u);
        EXPECT_EQ(server.requests().size(), 1u);
    }
}

TEST(HttpSession, ReportsAnAnswerThatIsNoHttpAfterOneRequest) {
    const std::vector<std::string> answers{
        "garbage\r\n\r\n",
        "SSH-2.0-OpenSSH_9.2\r\n",
        "\r\n\r\n",
        "{\"success\":true}",
        "HTTP/ 200 OK\r\n\r\n",
        "HTTP/garbage\r\n\r\n{\"success\":true}",
        "HTTP/1.1 OK\r\n\r\n",
        "HTTP/1.1 000 Zero\r\n\r\n",
        "HTTP/1.1 099 Low\r\n\r\n",
        "HTTP/1.1 1000 High\r\n\r\n",
        "HTTP/7.3 200 OK\r\nContent-Length: 0\r\n\r\n",
        "HTTP/1.1 200 OK\r\nno colon here\r\nContent-Length: 0\r\n\r\n",
        "HTTP/1.1 200 OK\r\nX: a\0b\r\nContent-Length: 0\r\n\r\n"s,
        "HTTP/1.1 200 OK\r\nContent-Length: -5\r\n\r\n",
        "HTTP/1.1 200 OK\r\nX: " + std::string(200'000, 'x') + "\r\nContent-Length: 0\r\n\r\n",
    };
    for (const std::string& bytes : answers) {
        SCOPED_TRACE(::testing::PrintToString(bytes.substr(0, 60)));
        const ScriptedServer server(always({Send{bytes}}));

        expectError(resultOf(post(server.url("/"))), -1017, "cannot parse response");

        EXPECT_EQ(server.connections().size(), 1u);
        EXPECT_EQ(server.requests().size(), 1u);
    }
}

TEST(HttpSession, ReportsAHeaderOfAMebibyteAsALostConnection) {
    const std::vector<std::string> fields(1024, "X-Filler: " + std::string(1012, 'x'));
    const ScriptedServer server(always({Send{answerBytes(200, "the body", fields)}}));

    expectConnectionLost(resultOf(post(server.url("/"))));

    EXPECT_EQ(server.requests().size(), 1U);
}

// Newer versions of libcurl return this for a header that is too long; older ones don't declare it.
TEST(HttpSession, MapsTheErrorForATooLargeHeader) {
    EXPECT_EQ(platform::failureOf(static_cast<CURLcode>(100)).code, -1017);
}

TEST(HttpSession, KeepsTheDetailsPrintable) {
    const platform::HttpError error =
        platform::errorFor(platform::untrustedServer, "one\x7F two\r\n\xC3\xA9 three\t", "a\x1B.example");
    EXPECT_EQ(error.details, "NSURLErrorDomain -1202 \"" + error.localizedDescription + "\" (one? two  ?? three)");
    EXPECT_NE(error.localizedDescription.find("“a?.example”"), std::string::npos) << error.localizedDescription;
}

TEST(HttpSession, RefusesAUrlThatIsNotHttp) {
    for (const std::string url : {"ftp://127.0.0.1/", "file:///etc/hostname", "data:,text", "foo:x", "mailto:a@b",
                                  "localhost:8080/x", "path", "/path", "//127.0.0.1/path", "?query", "#part", ".."}) {
        SCOPED_TRACE(url);

        expectError(resultOf(post(url)), -1002, "unsupported URL");
    }
}

TEST(HttpSession, ReportsAUrlWithoutAHost) {
    for (const std::string url : {"http:", "http:x", "http:/x", "http://", "http:///x", "https:///127.0.0.1/",
                                  "http://:80/x", "http://user@/x", "http://?query"}) {
        SCOPED_TRACE(url);

        expectError(resultOf(post(url)), -1003, "A server with the specified hostname could not be found.");
    }
}

TEST(HttpSession, ReportsAPortOutOfRangeAndAUrlThatIsTooLong) {
    for (const std::string& url : {std::string("http://127.0.0.1:65536/"), std::string("http://127.0.0.1:99999/"),
                                   "http://127.0.0.1/" + std::string(9'000'000, 'x')}) {
        expectError(resultOf(post(url)), -1000, "bad URL");
    }
}

}  // namespace
