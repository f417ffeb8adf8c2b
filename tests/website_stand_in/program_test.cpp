// The stand-in website as a program.
#include <gtest/gtest.h>
#include <httplib.h>

#include <csignal>
#include <string>

#include "tests/support/shell.h"

namespace {

using testSupport::shell;

// The website on a free port.
class RunningWebsite : public testSupport::BackgroundCommand {
  public:
    RunningWebsite() : BackgroundCommand(WEBSITE_STAND_IN_PROGRAM) {
        const std::string line = nextLine();
        port = std::stoi(line.substr(line.rfind(':') + 1));
        EXPECT_EQ(line, "Listening on http://127.0.0.1:" + std::to_string(port));
    }

    int port = 0;
};

TEST(WebsiteStandIn, AnswersAndLogsEachRequest) {
    RunningWebsite website;
    httplib::Client client("127.0.0.1", website.port);
    const auto installed =
        client.Post("/api/track-install/", R"({"platform":"mac","device_id":"A"})", "application/json");
    ASSERT_TRUE(installed);
    EXPECT_EQ(installed->get_header_value("Content-Type"), "application/json");
    EXPECT_EQ(installed->body, R"({"created":true})");
    EXPECT_EQ(website.nextLine(), "POST /api/track-install/ 200");

    const auto missing = client.Get("/detected-hardware/?hardware_id=7");
    ASSERT_TRUE(missing);
    EXPECT_EQ(missing->get_header_value("Content-Type"), "text/html; charset=utf-8");
    EXPECT_EQ(website.nextLine(), "GET /detected-hardware/?hardware_id=7 404");

    const auto wrongMethod = client.Delete("/api//track%2Dinstall/");
    ASSERT_TRUE(wrongMethod);
    EXPECT_EQ(website.nextLine(), "DELETE /api//track%2Dinstall/ 404");
}

TEST(WebsiteStandIn, RefusesABodyOfMoreThanAMebibyte) {
    const RunningWebsite website;
    const auto answer = httplib::Client("127.0.0.1", website.port)
                            .Post("/api/track-install/", std::string(1024 * 1024 + 1, ' '), "application/json");
    ASSERT_TRUE(answer);
    EXPECT_EQ(answer->status, 413);
    EXPECT_EQ(answer->body, R"({"success":false,"error":"The server could not take this request."})");
}

TEST(WebsiteStandIn, EndsWithStatus0OnASignalWithAnOpenConnection) {
    for (const int signal : {SIGTERM, SIGINT}) {
        RunningWebsite website;
        httplib::Client client("127.0.0.1", website.port);
        client.set_keep_alive(true);
        ASSERT_TRUE(client.Get("/"));
        EXPECT_EQ(website.end(signal), 0);
    }
}

TEST(WebsiteStandIn, EndsWithAnErrorIfThePortIsTakenOrInvalid) {
    const RunningWebsite website;
    const std::string port = std::to_string(website.port);
    const auto second = shell(WEBSITE_STAND_IN_PROGRAM " " + port + " 2>&1");
    EXPECT_EQ(second.status, 1);
    EXPECT_EQ(second.output,
              "website-stand-in: can't listen on 127.0.0.1:" + port + "; another program may have the port\n");
    for (const char* arguments : {"''", "http", "80a", "-1", "65536", "0 0"}) {
        const auto result = shell(WEBSITE_STAND_IN_PROGRAM " " + std::string(arguments) + " 2>&1");
        EXPECT_EQ(result.status, 2) << arguments;
        EXPECT_EQ(result.output, "Usage: website-stand-in [PORT]\n") << arguments;
    }
}

}  // namespace
