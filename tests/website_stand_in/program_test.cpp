#include <gtest/gtest.h>
#include <httplib.h>

#include <chrono>
#include <csignal>
#include <optional>
#include <string>

#include "tests/website_stand_in/stand_in_process.h"

namespace {

constexpr std::chrono::seconds patience{30};
constexpr const char* installJson = R"({"platform":"mac","device_id":"AAAA-1"})";
constexpr const char* installPath = "/api/track-install/";

httplib::Client clientOf(int port) {
    httplib::Client client("127.0.0.1", port);
    client.set_connection_timeout(patience);
    client.set_read_timeout(patience);
    return client;
}

TEST(WebsiteStandIn, SaysWhereItListensAndAnswersThere) {
    StandInProcess standIn({});
    const std::optional<int> port = standIn.port();
    ASSERT_TRUE(port);

    httplib::Client client = clientOf(*port);
    const httplib::Result created = client.Post(installPath, installJson, "application/json");
    const httplib::Result known = client.Post(installPath, installJson, "application/json");

    ASSERT_TRUE(created) << created.error();
    EXPECT_EQ(created->status, 200);
    EXPECT_EQ(created->get_header_value("Content-Type"), "application/json");
    EXPECT_EQ(created->body, R"({"created":true})");
    ASSERT_TRUE(known) << known.error();
    EXPECT_EQ(known->body, R"({"created":false})");
}

TEST(WebsiteStandIn, ShowsTheMachineThatWasSent) {
    StandInProcess standIn({});
    const std::optional<int> port = standIn.port();
    ASSERT_TRUE(port);
    const std::string machine =
        R"({"profile_name":"My PC","os":"macOS","processor":"Apple M2","graphics_card":"Apple M2","ram_gb":16,)"
        R"("ram_type":"LPDDR5","ram_frequency":6400,"storage_gb":494,"storage_type":"SSD","directx_version":"Metal 3",)"
        R"("gpu_memory":12})";

    httplib::Client client = clientOf(*port);
    const httplib::Result saved = client.Post("/save-detected-hardware/", machine, "application/json");
    const httplib::Result page = client.Get("/detected-hardware/?hardware_id=1");

    ASSERT_TRUE(saved) << saved.error();
    EXPECT_EQ(saved->body, R"({"success":true,"hardware_id":1,"redirect_url":"/detected-hardware/"})");
    ASSERT_TRUE(page) << page.error();
    EXPECT_EQ(page->status, 200);
    EXPECT_EQ(page->get_header_value("Content-Type"), "text/html; charset=utf-8");
    EXPECT_NE(page->body.find("<td>Apple M2</td>"), std::string::npos);
}

TEST(WebsiteStandIn, WritesALineForEachRequest) {
    StandInProcess standIn({});
    const std::optional<int> port = standIn.port();
    ASSERT_TRUE(port);

    httplib::Client client = clientOf(*port);
    ASSERT_TRUE(client.Post(installPath, installJson, "application/json"));
    EXPECT_EQ(standIn.nextLine(), "POST /api/track-install/ 200");
    ASSERT_TRUE(client.Post(installPath, "{}", "application/json"));
    EXPECT_EQ(standIn.nextLine(), "POST /api/track-install/ 400");
    ASSERT_TRUE(client.Get("/detected-hardware/?hardware_id=7"));
    EXPECT_EQ(standIn.nextLine(), "GET /detected-hardware/?hardware_id=7 404");
}

TEST(WebsiteStandIn, TakesAPathAsItWasSent) {
    StandInProcess standIn({});
    const std::optional<int> port = standIn.port();
    ASSERT_TRUE(port);

    httplib::Client client = clientOf(*port);
    for (const char* const path : {"//api/track-install/", "/api/track%2Dinstall/", "/%0A"}) {
        const httplib::Result answer = client.Post(path, installJson, "application/json");
        ASSERT_TRUE(answer) << answer.error();
        EXPECT_EQ(answer->status, 404) << path;
        EXPECT_EQ(answer->get_header_value("Content-Type"), "application/json") << path;
        EXPECT_EQ(answer->body, R"({"success":false,"error":"There is nothing at this address."})") << path;
    }
}

TEST(WebsiteStandIn, NamesTheMethodsAnAddressTakes) {
    StandInProcess standIn({});
    const std::optional<int> port = standIn.port();
    ASSERT_TRUE(port);

    httplib::Client client = clientOf(*port);
    const httplib::Result gotten = client.Get(installPath);
    const httplib::Result removed = client.Delete("/");
    const httplib::Result put = client.Put(installPath, installJson, "application/json");
    const httplib::Result patched = client.Patch(installPath, installJson, "application/json");
    const httplib::Result asked = client.Options("/");

    for (const httplib::Result* answer : {&gotten, &put, &patched}) {
        ASSERT_TRUE(*answer) << answer->error();
        EXPECT_EQ((*answer)->status, 405);
        EXPECT_EQ((*answer)->get_header_value("Allow"), "POST");
    }
    for (const httplib::Result* answer : {&removed, &asked}) {
        ASSERT_TRUE(*answer) << answer->error();
        EXPECT_EQ((*answer)->status, 405);
        EXPECT_EQ((*answer)->get_header_value("Allow"), "GET, HEAD");
    }
}

TEST(WebsiteStandIn, AnswersHeadWithoutABody) {
    StandInProcess standIn({});
    const std::optional<int> port = standIn.port();
    ASSERT_TRUE(port);

    httplib::Client client = clientOf(*port);
    const httplib::Result answer = client.Head("/");

    ASSERT_TRUE(answer) << answer.error();
    EXPECT_EQ(answer->status, 200);
    EXPECT_EQ(answer->body, "");
}

TEST(WebsiteStandIn, RefusesABodyOfMoreThanAMebibyteInItsOwnWords) {
    StandInProcess standIn({});
    const std::optional<int> port = standIn.port();
    ASSERT_TRUE(port);

    httplib::Client client = clientOf(*port);
    const httplib::Result answer = client.Post(installPath, std::string(1024 * 1024 + 1, ' '), "application/json");

    ASSERT_TRUE(answer) << answer.error();
    EXPECT_EQ(answer->status, 413);
    EXPECT_EQ(answer->body, R"({"success":false,"error":"The server could not take this request."})");
}

class EndingSignal : public testing::TestWithParam<int> {};

TEST_P(EndingSignal, EndsItWithStatus0EvenWhileAConnectionIsOpen) {
    StandInProcess standIn({});
    const std::optional<int> port = standIn.port();
    ASSERT_TRUE(port);
    httplib::Client client = clientOf(*port);
    client.set_keep_alive(true);
    ASSERT_TRUE(client.Get("/"));

    standIn.signal(GetParam());

    EXPECT_EQ(standIn.waitForExit(), 0);
}

INSTANTIATE_TEST_SUITE_P(WebsiteStandIn, EndingSignal, testing::Values(SIGTERM, SIGINT),
                         [](const auto& ending) { return ending.param == SIGTERM ? "Terminate" : "Interrupt"; });

TEST(WebsiteStandIn, EndsWithAnErrorWhenThePortIsTaken) {
    StandInProcess first({});
    const std::optional<int> port = first.port();
    ASSERT_TRUE(port);

    StandInProcess second({std::to_string(*port)});

    EXPECT_EQ(second.nextLine(), std::nullopt);
    EXPECT_EQ(second.waitForExit(), 1);
    EXPECT_EQ(second.standardError(), "website-stand-in: can't listen on 127.0.0.1:" + std::to_string(*port) +
                                          "; another program may have the port\n");
}

// A port that was free a moment ago; absent when no stand-in could be had to find one.
std::optional<int> freePort() {
    StandInProcess finder({});
    std::optional<int> port = finder.port();
    finder.signal(SIGTERM);
    if (finder.waitForExit() != 0) return std::nullopt;
    return port;
}

TEST(WebsiteStandIn, ListensOnThePortItWasGiven) {
    // Another program may take the port in between, though not time and again.
    constexpr int attempts = 10;
    for (int attempt = 0; attempt < attempts; ++attempt) {
        const std::optional<int> port = freePort();
        ASSERT_TRUE(port);
        StandInProcess standIn({std::to_string(*port)});
        if (standIn.port() != port) continue;

        const httplib::Result answer = clientOf(*port).Get("/");

        ASSERT_TRUE(answer) << answer.error();
        EXPECT_EQ(answer->status, 200);
        return;
    }
    FAIL() << "It did not listen on any of " << attempts << " ports.";
}

TEST(WebsiteStandIn, SaysHowToCallItWhenThePortIsNoPort) {
    for (const char* const word : {"", "http", "80a", "-1", "65536", " 80"}) {
        StandInProcess standIn({word});

        EXPECT_EQ(standIn.waitForExit(), 2) << word;
        EXPECT_EQ(standIn.standardError(), "Usage: website-stand-in [PORT]\n") << word;
    }
}

TEST(WebsiteStandIn, SaysHowToCallItWhenThereIsMoreThanAPort) {
    StandInProcess standIn({"0", "0"});

    EXPECT_EQ(standIn.waitForExit(), 2);
    EXPECT_EQ(standIn.standardError(), "Usage: website-stand-in [PORT]\n");
}

}  // namespace
