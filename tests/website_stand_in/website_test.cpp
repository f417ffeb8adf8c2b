// What the stand-in website accepts, refuses and shows.
#include "website_stand_in/website.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace {

using websiteStandIn::WebAnswer;

constexpr const char* machine =
    R"({"profile_name":"My PC","os":"macOS","processor":"Apple M2 Pro","graphics_card":"Apple M2 Pro GPU","ram_gb":16,)"
    R"("ram_type":"LPDDR5","ram_frequency":6400,"storage_gb":494,"storage_type":"SSD","directx_version":"Metal 3",)"
    R"("gpu_memory":12})";
constexpr const char* install = R"({"platform":"mac","device_id":"AAAA-1"})";
constexpr const char* usage = R"({"device_id":"AAAA-1","date":"2024-05-01"})";

constexpr const char* machinePath = "/save-detected-hardware/";
constexpr const char* installPath = "/api/track-install/";
constexpr const char* usagePath = "/api/track-usage/";

std::string replaced(std::string text, const std::string& part, const std::string& replacement) {
    const std::size_t position = text.find(part);
    if (position == std::string::npos) throw std::invalid_argument(part);
    return text.replace(position, part.size(), replacement);
}

class Website : public testing::Test {
  protected:
    WebAnswer post(const std::string& target, const std::string& body) {
        return website_.answerTo({"POST", target, "application/json", body});
    }
    WebAnswer get(const std::string& target) { return website_.answerTo({"GET", target, "", ""}); }

    void expectOn(const std::string& target, const std::vector<std::string>& parts) {
        const WebAnswer page = get(target);
        EXPECT_EQ(page.status, 200);
        EXPECT_EQ(page.contentType, "text/html; charset=utf-8");
        for (const std::string& part : parts) EXPECT_NE(page.body.find(part), std::string::npos) << part;
    }

    websiteStandIn::Website website_;
};

TEST_F(Website, StoresMachinesAndShowsEachOnAPageOfItsOwn) {
    expectOn("/", {"None has been sent yet.", "0 installs and 0 usages reported."});
    const WebAnswer first = post(machinePath, machine);
    EXPECT_EQ(first.status, 200);
    EXPECT_EQ(first.contentType, "application/json");
    EXPECT_EQ(first.body, R"({"success":true,"hardware_id":1,"redirect_url":"/detected-hardware/"})");
    EXPECT_EQ(post(machinePath, "{}").status, 400);
    const WebAnswer second = post(machinePath, replaced(machine, R"("Apple M2 Pro")", R"("Intel")"));
    EXPECT_EQ(second.body, R"({"success":true,"hardware_id":2,"redirect_url":"/detected-hardware/"})");

    expectOn("/detected-hardware/?from=tool&hardware_id=1&x",
             {"<h1>My PC</h1>", R"(Operating system</th><td>macOS</td>)", R"(Processor</th><td>Apple M2 Pro</td>)",
              R"(Graphics card</th><td>Apple M2 Pro GPU</td>)", R"(Graphics memory</th><td>12 GB</td>)",
              R"(Memory</th><td>16 GB</td>)", R"(Memory type</th><td>LPDDR5</td>)",
              R"(Memory frequency</th><td>6400 MHz</td>)", R"(Storage</th><td>494 GB</td>)",
              R"(Storage type</th><td>SSD</td>)", R"(DirectX version</th><td>Metal 3</td>)"});
    expectOn("/detected-hardware/?hardware_id=2", {R"(Processor</th><td>Intel</td>)"});
    expectOn("/", {R"(<a href="/detected-hardware/?hardware_id=1">1. My PC</a></th><td>Apple M2 Pro</td>)",
                   R"(<a href="/detected-hardware/?hardware_id=2">2. My PC</a></th><td>Intel</td>)"});
}

TEST_F(Website, CountsInstallsOnceAndUsagesEachTime) {
    EXPECT_EQ(post(installPath, install).body, R"({"created":true})");
    EXPECT_EQ(post(installPath, install).body, R"({"created":false})");
    EXPECT_EQ(post(usagePath, usage).body, R"({"success":true})");
    EXPECT_EQ(post(usagePath, replaced(usage, "05-01", "05-02")).body, R"({"success":true})");
    expectOn("/", {"1 install and 2 usages reported.", R"(AAAA-1</th><td>2024-05-01, 2024-05-02</td>)"});
}

TEST_F(Website, RefusesABodyWithoutExactlyTheMembersOfItsEndpoint) {
    const std::vector<std::pair<std::string, std::string>> refused = {
        {"[]", "The body must be a JSON object."},
        {replaced(machine, R"("os")", R"("OS")"), R"(The member \"os\" is missing.)"},
        {replaced(machine, "\"macOS\"", "1"), R"(The member \"os\" must be a string.)"},
        {replaced(machine, "16", "16.0"), R"(The member \"ram_gb\" must be an integer.)"},
        {replaced(machine, "{", R"({"serial":"C02",)"), R"(The member \"serial\" is unknown.)"},
        {replaced(machine, "}", R"(,"os":"macOS"})"), R"(The member \"os\" is given twice.)"},
    };
    for (const auto& [body, sentence] : refused) {
        const WebAnswer answer = post(machinePath, body);
        EXPECT_EQ(answer.status, 400) << body;
        EXPECT_EQ(answer.body, R"({"success":false,"error":")" + sentence + "\"}");
    }
    expectOn("/", {"None has been sent yet."});
    EXPECT_EQ(post(installPath, replaced(install, "mac", "linux")).status, 400);
    EXPECT_EQ(post(usagePath, R"({"device_id":"A"})").status, 400);
}

TEST_F(Website, RefusesOtherTypesAddressesMethodsAndMachines) {
    EXPECT_EQ(website_.answerTo({"POST", machinePath, "text/plain", machine}).status, 400);
    EXPECT_EQ(post("/save-detected-hardware", machine).status, 404);
    EXPECT_EQ(get(machinePath).status, 405);
    EXPECT_EQ(get(machinePath).allow, "POST");
    EXPECT_EQ(get("/detected-hardware/?hardware_id=1").status, 404);
}

TEST_F(Website, EscapesHtml) {
    const std::string text = R"(<b a='1' c=\"2\">&amp;)";
    const std::string html = "&lt;b a=&#39;1&#39; c=&quot;2&quot;&gt;&amp;amp;";
    std::string odd = machine;
    for (const char* value : {"My PC", "macOS", "Apple M2 Pro", "Apple M2 Pro GPU", "LPDDR5", "SSD", "Metal 3"}) {
        odd = replaced(odd, std::string("\"") + value + "\"", "\"" + text + "\"");
    }
    EXPECT_EQ(post(machinePath, odd).status, 200);
    post(usagePath, R"({"device_id":")" + text + R"(","date":")" + text + "\"}");
    expectOn("/", {"1. " + html + "</a></th><td>" + html + "</td>", "<th scope=\"row\">" + html + "</th><td>" + html});
    expectOn("/detected-hardware/?hardware_id=1", {"<title>" + html + "</title>", "<h1>" + html + "</h1>"});
    for (const char* target : {"/", "/detected-hardware/?hardware_id=1"}) {
        EXPECT_EQ(get(target).body.find("<b a"), std::string::npos) << target;
    }
}

}  // namespace
