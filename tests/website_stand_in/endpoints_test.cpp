// What the stand-in website takes, and what it refuses.
#include <gtest/gtest.h>

#include <array>
#include <ostream>
#include <string>

#include "tests/website_stand_in/website_requests.h"

using websiteStandIn::WebAnswer;
using websiteStandIn::Website;

namespace {

using namespace websiteStandInTest;

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

}  // namespace
