#include "website_stand_in/website.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <future>
#include <optional>
#include <ostream>
#include <set>
#include <stdexcept>
#include <string>
#include <variant>
#include <vector>

#include "platform/json.h"

using websiteStandIn::WebAnswer;
using websiteStandIn::Website;

namespace {

constexpr const char* machineJson =
    R"({"profile_name":"My PC","os":"macOS","processor":"Apple M2 Pro","graphics_card":"Apple M2 Pro GPU","ram_gb":16,)"
    R"("ram_type":"LPDDR5","ram_frequency":6400,"storage_gb":494,"storage_type":"SSD","directx_version":"Metal 3",)"
    R"("gpu_memory":12})";

WebAnswer post(Website& website, const std::string& target, const std::string& body) {
    return website.answerTo({"POST", target, "application/json", body});
}

WebAnswer get(Website& website, const std::string& target) { return website.answerTo({"GET", target, "", ""}); }

WebAnswer saveMachine(Website& website, const std::string& body) {
    return post(website, "/save-detected-hardware/", body);
}

std::string replaced(std::string text, const std::string& part, const std::string& replacement) {
    const std::size_t position = text.find(part);
    if (position == std::string::npos) throw std::invalid_argument(part);
    return text.replace(position, part.size(), replacement);
}

std::string machineWith(const std::string& part, const std::string& replacement) {
    return replaced(machineJson, part, replacement);
}

// The sentence of a refusal, or a word on what kept the answer from being one.
std::string sentenceOf(const WebAnswer& answer) {
    const std::optional<platform::JsonObject> object = platform::jsonObjectFrom(answer.body);
    if (!object) return "no JSON object";
    const platform::JsonValue* success = object->find("success");
    if (success == nullptr || !std::holds_alternative<bool>(success->content())) return "no success";
    if (success->asBool() != false) return "no refusal";
    const platform::JsonValue* error = object->find("error");
    return error != nullptr && error->asString() != nullptr ? *error->asString() : "no sentence";
}

bool contains(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

TEST(Website, StoresAMachineAndNamesItsPage) {
    Website website;

    const WebAnswer answer = saveMachine(website, machineJson);

    EXPECT_EQ(answer.status, 200);
    EXPECT_EQ(answer.contentType, "application/json");
    EXPECT_EQ(answer.body, R"({"success":true,"hardware_id":1,"redirect_url":"/detected-hardware/"})");
}

TEST(Website, CountsHardwareIdsUp) {
    Website website;

    EXPECT_TRUE(contains(saveMachine(website, machineJson).body, R"("hardware_id":1,)"));
    EXPECT_TRUE(contains(saveMachine(website, machineJson).body, R"("hardware_id":2,)"));
    EXPECT_TRUE(contains(saveMachine(website, machineJson).body, R"("hardware_id":3,)"));
}

TEST(Website, SpendsNoHardwareIdOnAMachineItRefuses) {
    Website website;

    EXPECT_EQ(saveMachine(website, "{}").status, 400);

    EXPECT_TRUE(contains(saveMachine(website, machineJson).body, R"("hardware_id":1,)"));
}

TEST(Website, TakesMembersInAnyOrderAndEmptyTextsAndAnyInteger) {
    Website website;
    const std::string body =
        R"({"gpu_memory":0,"directx_version":"","storage_type":"","storage_gb":-1,"ram_frequency":9223372036854775807,)"
        R"("ram_type":"","ram_gb":-9223372036854775808,"graphics_card":"","processor":"","os":"","profile_name":""})";

    EXPECT_EQ(saveMachine(website, body).status, 200);
}

struct RefusedBody {
    const char* what;
    std::string body;
    std::string sentence;
};

void PrintTo(const RefusedBody& refused, std::ostream* stream) { *stream << refused.what; }

std::string nameOf(const testing::TestParamInfo<RefusedBody>& info) { return info.param.what; }

class RefusedMachine : public testing::TestWithParam<RefusedBody> {};

TEST_P(RefusedMachine, IsAnsweredWithASentenceOnTheFirstThingWrong) {
    Website website;

    const WebAnswer answer = saveMachine(website, GetParam().body);

    EXPECT_EQ(answer.status, 400);
    EXPECT_EQ(answer.contentType, "application/json");
    EXPECT_EQ(sentenceOf(answer), GetParam().sentence);
}

INSTANTIATE_TEST_SUITE_P(
    Website, RefusedMachine,
    testing::Values(
        RefusedBody{"EmptyBody", "", "The body must be a JSON object."},
        RefusedBody{"BrokenJson", R"({"os":)", "The body must be a JSON object."},
        RefusedBody{"Array", "[]", "The body must be a JSON object."},
        RefusedBody{"Form", "os=macOS", "The body must be a JSON object."},
        RefusedBody{"MalformedUtf8", machineWith("macOS", "\xff"), "The body must be a JSON object."},
        RefusedBody{"EmptyObject", "{}", R"(The member "profile_name" is missing.)"},
        RefusedBody{"NoProfileName", machineWith(R"("profile_name":"My PC",)", ""),
                    R"(The member "profile_name" is missing.)"},
        RefusedBody{"NoOs", machineWith(R"("os":"macOS",)", ""), R"(The member "os" is missing.)"},
        RefusedBody{"NoProcessor", machineWith(R"("processor":"Apple M2 Pro",)", ""),
                    R"(The member "processor" is missing.)"},
        RefusedBody{"NoGraphicsCard", machineWith(R"("graphics_card":"Apple M2 Pro GPU",)", ""),
                    R"(The member "graphics_card" is missing.)"},
        RefusedBody{"NoRamGb", machineWith(R"("ram_gb":16,)", ""), R"(The member "ram_gb" is missing.)"},
        RefusedBody{"NoRamType", machineWith(R"("ram_type":"LPDDR5",)", ""), R"(The member "ram_type" is missing.)"},
        RefusedBody{"NoRamFrequency", machineWith(R"("ram_frequency":6400,)", ""),
                    R"(The member "ram_frequency" is missing.)"},
        RefusedBody{"NoStorageGb", machineWith(R"("storage_gb":494,)", ""), R"(The member "storage_gb" is missing.)"},
        RefusedBody{"NoStorageType", machineWith(R"("storage_type":"SSD",)", ""),
                    R"(The member "storage_type" is missing.)"},
        RefusedBody{"NoDirectxVersion", machineWith(R"("directx_version":"Metal 3",)", ""),
                    R"(The member "directx_version" is missing.)"},
        RefusedBody{"NoGpuMemory", machineWith(R"(,"gpu_memory":12)", ""), R"(The member "gpu_memory" is missing.)"},
        RefusedBody{"NumberAsProfileName", machineWith(R"("My PC")", "1"),
                    R"(The member "profile_name" must be a string.)"},
        RefusedBody{"NullAsOs", machineWith(R"("macOS")", "null"), R"(The member "os" must be a string.)"},
        RefusedBody{"BooleanAsProcessor", machineWith(R"("Apple M2 Pro")", "true"),
                    R"(The member "processor" must be a string.)"},
        RefusedBody{"ArrayAsGraphicsCard", machineWith(R"("Apple M2 Pro GPU")", R"(["Apple M2 Pro GPU"])"),
                    R"(The member "graphics_card" must be a string.)"},
        RefusedBody{"ObjectAsRamType", machineWith(R"("LPDDR5")", "{}"), R"(The member "ram_type" must be a string.)"},
        RefusedBody{"NumberAsStorageType", machineWith(R"("SSD")", "0"),
                    R"(The member "storage_type" must be a string.)"},
        RefusedBody{"NumberAsDirectxVersion", machineWith(R"("Metal 3")", "3"),
                    R"(The member "directx_version" must be a string.)"},
        RefusedBody{"StringAsRamGb", machineWith("16", R"("16")"), R"(The member "ram_gb" must be an integer.)"},
        RefusedBody{"TrueAsRamGb", machineWith("16", "true"), R"(The member "ram_gb" must be an integer.)"},
        RefusedBody{"FalseAsRamFrequency", machineWith("6400", "false"),
                    R"(The member "ram_frequency" must be an integer.)"},
        RefusedBody{"FractionAsStorageGb", machineWith("494", "494.5"),
                    R"(The member "storage_gb" must be an integer.)"},
        RefusedBody{"WholeNumberWithAPointAsStorageGb", machineWith("494", "494.0"),
                    R"(The member "storage_gb" must be an integer.)"},
        RefusedBody{"NullAsGpuMemory", machineWith("12", "null"), R"(The member "gpu_memory" must be an integer.)"},
        RefusedBody{"TooLargeGpuMemory", machineWith("12", "9223372036854775808"),
                    R"(The member "gpu_memory" must be an integer.)"},
        RefusedBody{"OneMemberMore", machineWith("{", R"({"serial":"C02",)"), R"(The member "serial" is unknown.)"},
        RefusedBody{"NameInOtherCase", machineWith(R"("os")", R"("OS")"), R"(The member "os" is missing.)"},
        RefusedBody{"OneMemberTwice", machineWith("}", R"(,"os":"macOS"})"), R"(The member "os" is given twice.)"},
        RefusedBody{"TwoThingsWrong", machineWith(R"("macOS")", "1,\"serial\":2"),
                    R"(The member "os" must be a string.)"}),
    nameOf);

struct ContentType {
    const char* value;
    int status;
};

TEST(Website, TakesJsonOnlyWhenItIsSaidToBeJson) {
    const std::array<ContentType, 9> contentTypes = {{{"application/json", 200},
                                                      {"application/json; charset=utf-8", 200},
                                                      {"application/json ;charset=utf-8", 200},
                                                      {"Application/JSON", 200},
                                                      {"", 400},
                                                      {"text/plain", 400},
                                                      {"application/json-seq", 400},
                                                      {"application/x-www-form-urlencoded", 400},
                                                      {"text/plain; application/json", 400}}};
    for (const ContentType& contentType : contentTypes) {
        Website website;

        const WebAnswer answer = website.answerTo({"POST", "/save-detected-hardware/", contentType.value, machineJson});

        EXPECT_EQ(answer.status, contentType.status) << contentType.value;
        if (answer.status == 200) continue;
        EXPECT_EQ(sentenceOf(answer), "The Content-Type must be application/json.") << contentType.value;
    }
}

TEST(Website, SaysOnceThatAnInstallWasCreated) {
    Website website;
    const std::string install = R"({"platform":"mac","device_id":"AAAA-1"})";

    const WebAnswer first = post(website, "/api/track-install/", install);
    const WebAnswer second = post(website, "/api/track-install/", install);
    const WebAnswer third = post(website, "/api/track-install/", install);

    EXPECT_EQ(first.status, 200);
    EXPECT_EQ(first.body, R"({"created":true})");
    EXPECT_EQ(second.status, 200);
    EXPECT_EQ(second.body, R"({"created":false})");
    EXPECT_EQ(third.body, R"({"created":false})");
}

TEST(Website, TellsDevicesApart) {
    Website website;

    const WebAnswer one = post(website, "/api/track-install/", R"({"platform":"mac","device_id":"AAAA-1"})");
    const WebAnswer other = post(website, "/api/track-install/", R"({"platform":"mac","device_id":"aaaa-1"})");

    EXPECT_EQ(one.body, R"({"created":true})");
    EXPECT_EQ(other.body, R"({"created":true})");
}

class RefusedInstall : public testing::TestWithParam<RefusedBody> {};

TEST_P(RefusedInstall, IsAnsweredWithASentenceAndNotRemembered) {
    Website website;

    const WebAnswer answer = post(website, "/api/track-install/", GetParam().body);

    EXPECT_EQ(answer.status, 400);
    EXPECT_EQ(sentenceOf(answer), GetParam().sentence);
    EXPECT_EQ(post(website, "/api/track-install/", R"({"platform":"mac","device_id":"A"})").body,
              R"({"created":true})");
}

INSTANTIATE_TEST_SUITE_P(
    Website, RefusedInstall,
    testing::Values(RefusedBody{"BrokenJson", "{", "The body must be a JSON object."},
                    RefusedBody{"NoPlatform", R"({"device_id":"A"})", R"(The member "platform" is missing.)"},
                    RefusedBody{"NoDevice", R"({"platform":"mac"})", R"(The member "device_id" is missing.)"},
                    RefusedBody{"OtherPlatform", R"({"platform":"linux","device_id":"A"})",
                                R"(The member "platform" must be "mac".)"},
                    RefusedBody{"PlatformInOtherCase", R"({"platform":"Mac","device_id":"A"})",
                                R"(The member "platform" must be "mac".)"},
                    RefusedBody{"NumberAsPlatform", R"({"platform":1,"device_id":"A"})",
                                R"(The member "platform" must be a string.)"},
                    RefusedBody{"NumberAsDevice", R"({"platform":"mac","device_id":1})",
                                R"(The member "device_id" must be a string.)"},
                    RefusedBody{"OneMemberMore", R"({"platform":"mac","device_id":"A","date":"2024-05-01"})",
                                R"(The member "date" is unknown.)"}),
    nameOf);

TEST(Website, TakesAUsageReportEveryTime) {
    Website website;
    const std::string usage = R"({"device_id":"AAAA-1","date":"2024-05-01"})";

    const WebAnswer first = post(website, "/api/track-usage/", usage);
    const WebAnswer second = post(website, "/api/track-usage/", usage);

    EXPECT_EQ(first.status, 200);
    EXPECT_EQ(first.body, R"({"success":true})");
    EXPECT_EQ(second.status, 200);
    EXPECT_EQ(second.body, R"({"success":true})");
}

class RefusedUsage : public testing::TestWithParam<RefusedBody> {};

TEST_P(RefusedUsage, IsAnsweredWithASentenceAndNotCounted) {
    Website website;

    const WebAnswer answer = post(website, "/api/track-usage/", GetParam().body);

    EXPECT_EQ(answer.status, 400);
    EXPECT_EQ(sentenceOf(answer), GetParam().sentence);
    EXPECT_TRUE(contains(get(website, "/").body, "0 installs and 0 usages reported."));
}

INSTANTIATE_TEST_SUITE_P(
    Website, RefusedUsage,
    testing::Values(RefusedBody{"BrokenJson", "null", "The body must be a JSON object."},
                    RefusedBody{"NoDevice", R"({"date":"2024-05-01"})", R"(The member "device_id" is missing.)"},
                    RefusedBody{"NoDate", R"({"device_id":"A"})", R"(The member "date" is missing.)"},
                    RefusedBody{"NumberAsDate", R"({"device_id":"A","date":20240501})",
                                R"(The member "date" must be a string.)"},
                    RefusedBody{"NullAsDevice", R"({"device_id":null,"date":"2024-05-01"})",
                                R"(The member "device_id" must be a string.)"},
                    RefusedBody{"OneMemberMore", R"({"device_id":"A","date":"2024-05-01","platform":"mac"})",
                                R"(The member "platform" is unknown.)"}),
    nameOf);

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

TEST(Website, KnowsNoOtherAddress) {
    Website website;

    for (const char* const target :
         {"//save-detected-hardware/", "/save-detected-hardware", "/save-detected-hardware//",
          "/Save-Detected-Hardware/", "/%73ave-detected-hardware/", "save-detected-hardware/", "/api/track-install",
          "//api/track-install/", "/api/track-usage", "/api/", "//", "*", "", "/favicon.ico"}) {
        const WebAnswer posted = post(website, target, machineJson);
        EXPECT_EQ(posted.status, 404) << target;
        EXPECT_EQ(posted.contentType, "application/json") << target;
        EXPECT_EQ(sentenceOf(posted), "There is nothing at this address.") << target;
        EXPECT_EQ(get(website, target).status, 404) << target;
    }
    EXPECT_TRUE(contains(get(website, "/").body, "None has been sent yet."));
}

TEST(Website, SaysWhichMethodAnEndpointTakes) {
    Website website;

    for (const char* const target : {"/save-detected-hardware/", "/api/track-install/", "/api/track-usage/"}) {
        for (const char* const method : {"GET", "HEAD", "PUT", "PATCH", "DELETE", "OPTIONS", "post"}) {
            const WebAnswer answer = website.answerTo({method, target, "application/json", machineJson});
            EXPECT_EQ(answer.status, 405) << method << " " << target;
            EXPECT_EQ(answer.allow, "POST") << method << " " << target;
            EXPECT_EQ(sentenceOf(answer), "This address takes POST only.") << method << " " << target;
        }
    }
}

TEST(Website, SaysWhichMethodsAPageTakes) {
    Website website;
    saveMachine(website, machineJson);

    for (const char* const target : {"/", "/detected-hardware/?hardware_id=1"}) {
        for (const char* const method : {"POST", "PUT", "PATCH", "DELETE", "OPTIONS"}) {
            const WebAnswer answer = website.answerTo({method, target, "application/json", machineJson});
            EXPECT_EQ(answer.status, 405) << method << " " << target;
            EXPECT_EQ(answer.allow, "GET, HEAD") << method << " " << target;
            EXPECT_EQ(sentenceOf(answer), "This address takes GET, HEAD only.") << method << " " << target;
        }
        EXPECT_EQ(website.answerTo({"HEAD", target, "", ""}).status, 200) << target;
    }
}

TEST(Website, NamesNoMethodsWhereTheMethodWasRight) {
    Website website;

    EXPECT_EQ(saveMachine(website, machineJson).allow, "");
    EXPECT_EQ(saveMachine(website, "{}").allow, "");
    EXPECT_EQ(get(website, "/").allow, "");
    EXPECT_EQ(get(website, "/favicon.ico").allow, "");
}

TEST(Website, GivesEachOfManyMachinesSentAtOnceAnIdOfItsOwn) {
    constexpr int senders = 4;
    constexpr int machinesEach = 50;
    Website website;
    std::vector<std::future<std::vector<std::string>>> answers;
    for (int sender = 0; sender < senders; ++sender) {
        answers.push_back(std::async(std::launch::async, [&website] {
            std::vector<std::string> bodies;
            for (int i = 0; i < machinesEach; ++i) bodies.push_back(saveMachine(website, machineJson).body);
            return bodies;
        }));
    }

    std::set<std::int64_t> ids;
    for (auto& sender : answers) {
        for (const std::string& body : sender.get()) {
            const std::optional<platform::JsonObject> object = platform::jsonObjectFrom(body);
            ASSERT_TRUE(object && object->find("hardware_id") != nullptr) << body;
            ids.insert(object->find("hardware_id")->asInteger().value_or(0));
        }
    }

    EXPECT_EQ(ids.size(), 200U);
    EXPECT_EQ(*ids.begin(), 1);
    EXPECT_EQ(*ids.rbegin(), 200);
}

}  // namespace
