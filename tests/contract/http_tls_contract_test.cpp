// TLS.
#include "platform/http.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
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

TEST(HttpSession, ReportsAServerThatClosesDuringTheTlsHandshake) {
    const ScriptedServer server(always({}));

    const Result result = resultOf(post("https://127.0.0.1:" + std::to_string(server.port()) + "/"));

    expectError(result, -1200, "A TLS error caused the secure connection to fail.");
}

TEST(HttpSession, TimesOutInTheTlsHandshake) {
    const ScriptedServer server(always({WaitUntilClientHasGone{}}));

    expectTimedOut(resultOf(post("https://127.0.0.1:" + std::to_string(server.port()) + "/", "{}", 1s)));

    EXPECT_TRUE(server.waitForEndedConnections(1));
}

TEST(HttpSession, RefusesAnUntrustedCertificate) {
    const SelfSignedServer server;
    if (server.url().empty()) GTEST_SKIP() << "takes the openssl command";

    expectError(resultOf(post(server.url())), -1202,
                "The certificate for this server is invalid. You might be connecting to a server that is pretending "
                "to be “127.0.0.1” which could put your confidential information at risk.");
}

}  // namespace

// Ends without exit handlers: the session's thread may still use the TLS library, whose handlers free its data.
int main(int argumentCount, char** arguments) {
    testing::InitGoogleTest(&argumentCount, arguments);
    const int status = RUN_ALL_TESTS();
    std::fflush(nullptr);
    _exit(status);
}
