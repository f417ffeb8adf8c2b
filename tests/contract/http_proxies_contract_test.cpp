// The proxy that the system names, as the test says.
#include <gtest/gtest.h>

#include <cstdlib>

#include "platform/curl/system_proxy.h"
#include "tests/contract/http_requests.h"
#include "tests/support/scripted_server.h"

namespace {

using namespace httpContract;
using namespace testSupport;

std::string named;

}  // namespace

// In place of the system's.
std::string platform::systemProxyFor(const Url& url) {
    EXPECT_EQ(url.host(), "website.invalid");
    return named;
}

namespace {

TEST(HttpSession, SendsARequestThroughTheSystemsProxy) {
    setenv("no_proxy", "*", 1);
    const ScriptedServer proxy(always({Send{answerBytes(200, "by proxy")}}));
    named = proxy.url("");

    expectAnswer(resultOf(post("http://website.invalid/path?q")), 200, "by proxy");

    ASSERT_EQ(proxy.requests().size(), 1U);
    EXPECT_EQ(proxy.requests().front().target(), "http://website.invalid/path?q");
    EXPECT_EQ(proxy.requests().front().body(), "{\"a\":1}");
}

TEST(HttpSession, FollowsARedirectThroughTheSystemsProxy) {
    const ScriptedServer proxy(
        inTurn({{Send{answerBytes(302, "", {"Location: http://website.invalid/b"})}}, {Send{answerBytes(200, "b")}}}));
    named = proxy.url("");

    expectAnswer(resultOf(post("http://website.invalid/a")), 200, "b");

    EXPECT_EQ(proxy.requests().size(), 2U);
}

TEST(HttpSession, ReportsAProxyThatIsNotFound) {
    named = "http://proxy.invalid:1";
    const Result result = resultOf(post("http://website.invalid/"));
    ASSERT_TRUE(result.error.has_value());
    // Without a network the machine is offline instead.
    EXPECT_TRUE(result.error->details.starts_with("NSURLErrorDomain -1003 ") ||
                result.error->details.starts_with("NSURLErrorDomain -1009 "))
        << result.error->details;
}

TEST(HttpSession, AsksTheProxyForATunnelToAnHttpsWebsiteAndReportsARefusal) {
    const ScriptedServer proxy(always({Send{answerBytes(407, "who?", {"Proxy-Authenticate: Basic realm=\"r\""})}}));
    named = proxy.url("");

    const Result result = resultOf(post("https://website.invalid/"));

    // Versions of libcurl have different results for this.
    ASSERT_TRUE(result.error.has_value());
    EXPECT_NE(result.error->details.find("407"), std::string::npos) << result.error->details;
    ASSERT_EQ(proxy.requests().size(), 1U);
    EXPECT_EQ(proxy.requests().front().method(), "CONNECT");
    EXPECT_EQ(proxy.requests().front().target(), "website.invalid:443");
}

}  // namespace
