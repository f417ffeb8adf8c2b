// TLS.
#include "platform/http.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <string>
#include <vector>

#include "tests/contract/http_requests.h"
#include "tests/support/files.h"
#include "tests/support/scripted_server.h"
#include "tests/support/shell.h"

namespace {

using namespace std::chrono_literals;
using namespace httpContract;
using namespace testSupport;

std::string secureUrl(const ScriptedServer& server) {
    return "https://127.0.0.1:" + std::to_string(server.port()) + "/";
}

TEST(HttpSession, ReportsAServerThatDoesNotSpeakTls) {
    const std::vector<Script> scripts{{Send{answerBytes(400, "plain text here")}, WaitUntilClientHasGone{}},
                                      {Send{"garbage\r\n\r\n"}, WaitUntilClientHasGone{}},
                                      {}};
    for (const Script& script : scripts) {
        SCOPED_TRACE(&script - scripts.data());
        const ScriptedServer server(always(script));

        expectError(resultOf(post(secureUrl(server))), -1200, "A TLS error caused the secure connection to fail.");
    }
}

TEST(HttpSession, TimesOutInTheTlsHandshake) {
    const ScriptedServer server(always({WaitUntilClientHasGone{}}));

    expectTimedOut(resultOf(post(secureUrl(server), "{}", 1s)));

    EXPECT_TRUE(server.waitForEndedConnections(1));
}

TEST(HttpSession, RefusesAnUntrustedCertificate) {
    const TemporaryFolder folder;
    const std::string enter = "cd " + quoted(folder.path()) + " && ";
    if (shell(enter +
              "openssl req -x509 -newkey ec -pkeyopt ec_paramgen_curve:P-256 -nodes -keyout key -out certificate "
              "-subj /CN=127.0.0.1 -addext subjectAltName=IP:127.0.0.1 2>/dev/null")
            .status != 0) {
        GTEST_SKIP() << "needs the openssl command";
    }
    BackgroundCommand server("sh -c " + quoted(enter + "exec openssl s_server -www -accept 127.0.0.1:0 -key key "
                                                       "-cert certificate </dev/null 2>/dev/null"));
    std::string line;
    while (!line.starts_with("ACCEPT ")) {
        line = server.nextLine();
        if (line.empty()) GTEST_SKIP() << "needs an openssl command that takes an address";  // LibreSSL takes a port.
    }

    expectError(resultOf(post("https://127.0.0.1" + line.substr(line.rfind(':')) + "/")), -1202,
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
