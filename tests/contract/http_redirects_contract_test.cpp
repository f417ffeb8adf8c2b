// Redirects.
#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "tests/contract/http_requests.h"
#include "tests/contract/idle_socket.h"
#include "tests/support/scripted_server.h"

namespace {

using namespace httpContract;
using namespace testSupport;

TEST(HttpSession, FollowsA301A302AndA303AsAGetWithoutBody) {
    for (const int statusCode : {301, 302, 303}) {
        SCOPED_TRACE(statusCode);
        const ScriptedServer server(
            inTurn({{Send{redirectTo(statusCode, "/target?x")}}, {Send{answerBytes(200, "arrived")}}}));

        expectAnswer(resultOf(post(server.url("/start"))), 200, "arrived");

        ASSERT_EQ(server.requests().size(), 2u);
        const RecordedRequest target = server.requests().at(1);
        EXPECT_EQ(target.requestLine(), "GET /target?x HTTP/1.1");
        EXPECT_EQ(target.body(), "");
        EXPECT_TRUE(target.valuesOf("Content-Length").empty());
        EXPECT_TRUE(target.valuesOf("Referer").empty());
    }
}

TEST(HttpSession, FollowsA307AndA308WithMethodAndBody) {
    for (const int statusCode : {307, 308}) {
        SCOPED_TRACE(statusCode);
        const ScriptedServer server(
            inTurn({{Send{redirectTo(statusCode, "/target")}}, {Send{answerBytes(200, "arrived")}}}));

        expectAnswer(resultOf(post(server.url("/start"))), 200, "arrived");

        ASSERT_EQ(server.requests().size(), 2u);
        const RecordedRequest target = server.requests().at(1);
        EXPECT_EQ(target.requestLine(), "POST /target HTTP/1.1");
        EXPECT_EQ(target.valuesOf("Content-Type"), std::vector<std::string>{"application/json"});
        EXPECT_EQ(target.body(), "{\"a\":1}");
    }
}

TEST(HttpSession, FollowsARedirectToAnotherServerAndToAnErrorPage) {
    const ScriptedServer target(always({Send{answerBytes(404, "not here")}}));
    const ScriptedServer start(always({Send{redirectTo(302, target.url("/a"))}}));

    expectAnswer(resultOf(post(start.url("/"))), 404, "not here");
}

TEST(HttpSession, DeliversA3xxThatIsNoRedirect) {
    const std::vector<std::pair<int, std::vector<std::string>>> answers{
        {300, {"Location: /other"}},
        {305, {"Location: /other"}},
        {306, {"Location: /other"}},
        {399, {"Location: /o"}},
        {300, {}},
        {301, {}},
        {302, {}},
        {303, {}},
        {307, {}},
        {308, {}},
        {302, {"Location:"}},
        {307, {"Location: "}},
    };
    for (const auto& [statusCode, fields] : answers) {
        SCOPED_TRACE(statusCode);
        const ScriptedServer server(always({Send{answerBytes(statusCode, "choose", fields)}}));

        expectAnswer(resultOf(post(server.url("/"))), statusCode, "choose");

        EXPECT_EQ(server.requests().size(), 1u);
    }
}

TEST(HttpSession, DoesNotFollowA300AfterARedirect) {
    const ScriptedServer server(
        inTurn({{Send{redirectTo(302, "/choices")}}, {Send{answerBytes(300, "choose", {"Location: /one"})}}}));

    expectAnswer(resultOf(post(server.url("/"))), 300, "choose");

    EXPECT_EQ(server.requests().size(), 2u);
}

TEST(HttpSession, DoesNotFollowARedirectWhoseHeaderIsCut) {
    const ScriptedServer target(always({Send{answerBytes(200, "arrived")}}));
    const ScriptedServer start(always({Send{"HTTP/1.1 302 Found\r\nLocation: " + target.url("/") + "\r\nContent-Le"}}));

    expectConnectionLost(resultOf(post(start.url("/"))));

    EXPECT_EQ(start.requests().size(), 1u);
    EXPECT_TRUE(target.requests().empty());
}

TEST(HttpSession, ReportsARedirectToAnotherScheme) {
    for (const std::string location :
         {"ftp://127.0.0.1/x", "file:///etc/hostname", "data:,text", "unknown://127.0.0.1/x", "mailto:a@b"}) {
        SCOPED_TRACE(location);
        const ScriptedServer server(always({Send{redirectTo(302, location)}}));

        expectError(resultOf(post(server.url("/"))), -1002, "unsupported URL");

        EXPECT_EQ(server.requests().size(), 1u);
    }
}

TEST(HttpSession, FollowsSixteenRedirectsAndNoMore) {
    std::vector<Script> scripts(16, Script{Send{redirectTo(302, "/next")}});
    scripts.push_back({Send{answerBytes(200, "arrived")}});
    const ScriptedServer patient(inTurn(scripts));
    const ScriptedServer endless(always({Send{redirectTo(302, "/again")}}));

    expectAnswer(resultOf(post(patient.url("/"))), 200, "arrived");
    expectError(resultOf(post(endless.url("/"))), -1007, "too many HTTP redirects");

    EXPECT_EQ(patient.requests().size(), 17u);
    EXPECT_EQ(endless.requests().size(), 17u);
}

TEST(HttpSession, ReportsAnErrorAtTheTargetOfARedirect) {
    const IdleSocket refusing(IdleSocket::Kind::refusing);
    const ScriptedServer dropping(always({}));
    const ScriptedServer mumbling(always({Send{"mumble\r\n\r\n"}}));
    const auto redirected = [](const std::string& location) {
        const ScriptedServer server(always({Send{redirectTo(302, location)}}));
        return resultOf(post(server.url("/")));
    };

    expectError(redirected(refusing.url()), -1004, "Could not connect to the server.");
    expectConnectionLost(redirected(dropping.url("/")));
    expectError(redirected(mumbling.url("/")), -1017, "cannot parse response");
    EXPECT_EQ(dropping.requests().size(), 1u);
}

}  // namespace
