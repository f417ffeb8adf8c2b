// Large headers.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/contract/http_requests.h"
#include "tests/support/scripted_server.h"

namespace {

using namespace httpContract;
using namespace testSupport;

TEST(HttpSession, DeliversAnAnswerWithALongHeaderField) {
    const ScriptedServer server(always({Send{answerBytes(200, "the body", {"X-Long: " + std::string(90'000, 'x')})}}));

    expectAnswer(resultOf(post(server.url("/"))), 200, "the body");
}

TEST(HttpSession, ReportsAHeaderOfAMebibyteAsALostConnection) {
    const std::vector<std::string> fields(1024, "X-Filler: " + std::string(1012, 'x'));
    const ScriptedServer server(always({Send{answerBytes(200, "the body", fields)}}));

    expectConnectionLost(resultOf(post(server.url("/"))));

    EXPECT_EQ(server.requests().size(), 1U);
}

}  // namespace
