// TLS.
#include "platform/http.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <future>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "tests/contract/http_requests.h"
#include "tests/contract/self_signed_server.h"
#include "tests/support/scripted_server.h"

namespace {

using namespace std::chrono_literals;
using namespace httpContract;
using namespace testSupport;

TEST(HttpSession, ReportsAServerThatDoesNotSpeakTls) {
    const std::vector<std::string> answers{answerBytes(400, "plain text here"), "garbage\r\n\r\n"};
    for (const std::string& bytes : answers) {
        SCOPED_TRACE(bytes);
        const ScriptedServer server(always({Send{bytes}, WaitUntilClientHasGone{}}));

        const Result result = resultOf(post("https://127.0.0.1:" + std::to_string(server.port()) + "/"));

        expectError(result, -1200, "A TLS error caused the secure connection to fail.");
    }
}

TEST(HttpSession, ReportsAServerThatClosesInTheMiddleOfTheTlsGreeting) {
    const ScriptedServer server(always({}));

    const Result result = resultOf(post("https://127.0.0.1:" + std::to_string(server.port()) + "/"));

    expectError(result, -1200, "A TLS error caused the secure connection to fail.");
}

TEST(HttpSession, TimesOutInTheTlsGreeting) {
    const ScriptedServer server(always({WaitUntilClientHasGone{}}));

    expectTimedOut(resultOf(post("https://127.0.0.1:" + std::to_string(server.port()) + "/", "{}", 1s)));

    EXPECT_TRUE(server.waitForEndedConnections(1));
}

TEST(HttpSession, RefusesACertificateThatNobodyVouchesFor) {
    const SelfSignedServer server;
    if (server.url().empty()) GTEST_SKIP() << "takes the openssl command";

    expectError(resultOf(post(server.url())), -1202,
                "The certificate for this server is invalid. You might be connecting to a server that is pretending "
                "to be “127.0.0.1” which could put your confidential information at risk.");
}

// Exits while the first of these handlers runs and the others' greetings go on.
[[noreturn]] void exitAmidGreetings(const std::string& url) {
    static std::promise<void>& first = *new std::promise<void>;
    static std::once_flag once;
    for (int number = 0; number < 8; ++number) {
        platform::httpSession::start(get(url), [](auto&&...) { std::call_once(once, [] { first.set_value(); }); });
    }
    first.get_future().wait();
    std::exit(0);
}

TEST(HttpSessionDeathTest, LetsTheProcessExitWhileItIsInTheMiddleOfThings) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    // The processes to be ended run this function from its beginning, and use the server of the first.
    constexpr const char* variable = "HTTP_CONTRACT_TEST_TLS_SERVER";
    std::optional<SelfSignedServer> server;
    if (getenv(variable) == nullptr) {
        server.emplace();
        if (server->url().empty()) GTEST_SKIP() << "takes the openssl command";
        setenv(variable, server->url().c_str(), 1);
    }
    const std::string url = getenv(variable);

    for (int round = 0; round < 20; ++round) EXPECT_EXIT(exitAmidGreetings(url), ::testing::ExitedWithCode(0), "");

    unsetenv(variable);
}

}  // namespace
