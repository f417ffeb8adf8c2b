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
}

TEST(WebsiteStandIn, EndsWithStatus0OnASignalWithAnOpenConnection) {
    RunningWebsite website;
    httplib::Client client("127.0.0.1", website.port);
    client.set_keep_alive(true);
    ASSERT_TRUE(client.Get("/"));
    EXPECT_EQ(website.end(SIGTERM), 0);
}

TEST(WebsiteStandIn, EndsWithAnErrorIfThePortIsTakenOrInvalid) {
    const RunningWebsite website;
    const std::string port = std::to_string(website.port);
    const auto second = shell(WEBSITE_STAND_IN_PROGRAM " " + port + " 2>&1");
    EXPECT_EQ(second.status, 1);
    EXPECT_EQ(second.output,
              "website-stand-in: can't listen on 127.0.0.1:" + port + "; another program may have the port\n");
    const auto invalid = shell(WEBSITE_STAND_IN_PROGRAM " 80a 2>&1");
    EXPECT_EQ(invalid.status, 2);
    EXPECT_EQ(invalid.output, "Usage: website-stand-in [PORT]\n");
}

}  // namespace
