// What the stand-in website shows.
#include <gtest/gtest.h>

#include <array>
#include <string>

#include "tests/website_stand_in/website_requests.h"

using websiteStandIn::WebAnswer;
using websiteStandIn::Website;

namespace {

using namespace websiteStandInTest;

TEST(Website, ShowsAllTenFactsOfAStoredMachine) {
    Website website;
    saveMachine(website, machineJson);

    const WebAnswer page = get(website, "/detected-hardware/?hardware_id=1");

    EXPECT_EQ(page.status, 200);
    EXPECT_EQ(page.contentType, "text/html; charset=utf-8");
    EXPECT_TRUE(contains(page.body, "<h1>My PC</h1>"));
    const std::array<const char*, 10> rows = {
        R"(<th scope="row">Operating system</th><td>macOS</td>)",
        R"(<th scope="row">Processor</th><td>Apple M2 Pro</td>)",
        R"(<th scope="row">Graphics card</th><td>Apple M2 Pro GPU</td>)",
        R"(<th scope="row">Graphics memory</th><td>12 GB</td>)",
        R"(<th scope="row">Memory</th><td>16 GB</td>)",
        R"(<th scope="row">Memory type</th><td>LPDDR5</td>)",
        R"(<th scope="row">Memory frequency</th><td>6400 MHz</td>)",
        R"(<th scope="row">Storage</th><td>494 GB</td>)",
        R"(<th scope="row">Storage type</th><td>SSD</td>)",
        R"(<th scope="row">DirectX version</th><td>Metal 3</td>)",
    };
    for (const char* const row : rows) EXPECT_TRUE(contains(page.body, row)) << row;
}

TEST(Website, ShowsEachMachineUnderItsOwnNumber) {
    Website website;
    saveMachine(website, machineWith("Apple M2 Pro\"", "First Processor\""));
    saveMachine(website, machineWith("Apple M2 Pro\"", "Second Processor\""));

    const std::string first = get(website, "/detected-hardware/?hardware_id=1").body;
    const std::string second = get(website, "/detected-hardware/?hardware_id=2").body;

    EXPECT_TRUE(contains(first, "First Processor"));
    EXPECT_FALSE(contains(first, "Second Processor"));
    EXPECT_TRUE(contains(second, "Second Processor"));
    EXPECT_FALSE(contains(second, "First Processor"));
}

TEST(Website, FindsTheHardwareIdAmongOtherParameters) {
    Website website;
    saveMachine(website, machineJson);

    EXPECT_EQ(get(website, "/detected-hardware/?from=tool&hardware_id=1&x").status, 200);
}

TEST(Website, EscapesAProcessorThatIsAScript) {
    Website website;
    saveMachine(website, machineWith("Apple M2 Pro\"", "<script>alert(1)</script>\""));

    for (const char* const target : {"/", "/detected-hardware/?hardware_id=1"}) {
        const std::string page = get(website, target).body;
        EXPECT_TRUE(contains(page, "&lt;script&gt;alert(1)&lt;/script&gt;")) << target;
        EXPECT_FALSE(contains(page, "<script")) << target;
    }
}

TEST(Website, EscapesEveryTextItHasStored) {
    Website website;
    const std::string text = R"("<b a='1' c=\"2\">&amp;")";
    const std::string html = "&lt;b a=&#39;1&#39; c=&quot;2&quot;&gt;&amp;amp;";
    saveMachine(website, R"({"profile_name":)" + text + R"(,"os":)" + text + R"(,"processor":)" + text +
                             R"(,"graphics_card":)" + text + R"(,"ram_gb":1,"ram_type":)" + text +
                             R"(,"ram_frequency":1,"storage_gb":1,"storage_type":)" + text + R"(,"directx_version":)" +
                             text + R"(,"gpu_memory":1})");
    post(website, "/api/track-usage/", R"({"device_id":)" + text + R"(,"date":)" + text + "}");

    const std::string machinePage = get(website, "/detected-hardware/?hardware_id=1").body;
    const std::string startPage = get(website, "/").body;

    EXPECT_FALSE(contains(machinePage, "<b a"));
    EXPECT_FALSE(contains(startPage, "<b a"));
    EXPECT_TRUE(contains(machinePage, "<title>" + html + "</title>"));
    EXPECT_TRUE(contains(machinePage, "<h1>" + html + "</h1>"));
    for (const char* const heading :
         {"Operating system", "Processor", "Graphics card", "Memory type", "Storage type", "DirectX version"}) {
        EXPECT_TRUE(contains(machinePage, std::string(heading) + "</th><td>" + html + "</td>")) << heading;
    }
    EXPECT_TRUE(contains(startPage, "1. " + html + "</a></th><td>" + html + "</td>"));
    EXPECT_TRUE(contains(startPage, "<th scope=\"row\">" + html + "</th><td>" + html + "</td>"));
}

TEST(Website, AnswersForAMachineItDoesNotHaveWithAPageThatSaysSo) {
    Website website;
    saveMachine(website, machineJson);

    for (const char* const target :
         {"/detected-hardware/", "/detected-hardware/?", "/detected-hardware/?hardware_id",
          "/detected-hardware/?hardware_id=", "/detected-hardware/?hardware_id=0", "/detected-hardware/?hardware_id=2",
          "/detected-hardware/?hardware_id=-1", "/detected-hardware/?hardware_id=+1",
          "/detected-hardware/?hardware_id=1x", "/detected-hardware/?hardware_id=1.0",
          "/detected-hardware/?hardware_id=18446744073709551617", "/detected-hardware/?other_hardware_id=1"}) {
        const WebAnswer page = get(website, target);
        EXPECT_EQ(page.status, 404) << target;
        EXPECT_EQ(page.contentType, "text/html; charset=utf-8") << target;
        EXPECT_TRUE(contains(page.body, "No machine is stored under this number.")) << target;
    }
}

TEST(Website, BeginsWithNothingStoredAndNothingReported) {
    Website website;

    const WebAnswer page = get(website, "/");

    EXPECT_EQ(page.status, 200);
    EXPECT_EQ(page.contentType, "text/html; charset=utf-8");
    EXPECT_TRUE(contains(page.body, "None has been sent yet."));
    EXPECT_TRUE(contains(page.body, "0 installs and 0 usages reported."));
}

TEST(Website, ListsStoredMachinesWithLinksToTheirPages) {
    Website website;
    saveMachine(website, machineJson);
    saveMachine(website, machineWith("Apple M2 Pro\"", "Intel Core i7\""));

    const std::string page = get(website, "/").body;

    EXPECT_TRUE(
        contains(page, R"(<a href="/detected-hardware/?hardware_id=1">1. My PC</a></th><td>Apple M2 Pro</td>)"));
    EXPECT_TRUE(
        contains(page, R"(<a href="/detected-hardware/?hardware_id=2">2. My PC</a></th><td>Intel Core i7</td>)"));
    EXPECT_FALSE(contains(page, "None has been sent yet."));
}

TEST(Website, CountsInstallsOnceAndUsagesEachTimeAndListsTheirDays) {
    Website website;
    post(website, "/api/track-install/", R"({"platform":"mac","device_id":"AAAA-1"})");
    post(website, "/api/track-install/", R"({"platform":"mac","device_id":"AAAA-1"})");
    post(website, "/api/track-usage/", R"({"device_id":"AAAA-1","date":"2024-05-01"})");
    post(website, "/api/track-usage/", R"({"device_id":"AAAA-1","date":"2024-05-02"})");
    post(website, "/api/track-usage/", R"({"device_id":"BBBB-2","date":"2024-05-02"})");

    const std::string page = get(website, "/").body;

    EXPECT_TRUE(contains(page, "1 install and 3 usages reported."));
    EXPECT_TRUE(contains(page, R"(<th scope="row">AAAA-1</th><td>2024-05-01, 2024-05-02</td>)"));
    EXPECT_TRUE(contains(page, R"(<th scope="row">BBBB-2</th><td>2024-05-02</td>)"));
}

}  // namespace
