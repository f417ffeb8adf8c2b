#include <gtest/gtest.h>

#include "hardware/hardware_detector.h"
#include "platform/json.h"
#include "tests/fakes/fakes.h"

namespace {

using fakes::answered;
using fakes::machine;
using Lines = std::vector<std::string>;

class SubmissionRequest : public testing::Test {
  protected:
    void SetUp() override { fakes::reset(); }

    HardwareInfo hardware_{"macOS", "M1", "M1 GPU", 16, "DDR4", 2666, 494, "SSD", "Not Applicable", 4};
};

TEST_F(SubmissionRequest, PostsTheElevenMembersUnderTheWebsitesNames) {
    machine().website = [](const auto&) { return answered(200, R"({"success":true})"); };

    EXPECT_TRUE(HardwareDetector::sendToWebsite("http://site.example", hardware_));

    ASSERT_EQ(machine().requests.size(), 1U);
    const platform::HttpRequest& request = machine().requests[0];
    EXPECT_EQ(request.url.absoluteString(), "http://site.example/save-detected-hardware/");
    EXPECT_EQ(request.timeoutInterval, std::chrono::seconds(60));
    EXPECT_EQ(request.body,
              R"({"profile_name":"My PC","os":"macOS","processor":"M1","graphics_card":"M1 GPU","ram_gb":16,)"
              R"("ram_type":"DDR4","ram_frequency":2666,"storage_gb":494,"storage_type":"SSD",)"
              R"("directx_version":"Not Applicable","gpu_memory":4})");
}

TEST_F(SubmissionRequest, SendsEmptyTextsAndAnyNumberUnchanged) {
    machine().website = [](const auto&) { return answered(200, R"({"success":true})"); };
    const HardwareInfo odd{"", "", "", INT64_MIN, "", 0, INT64_MAX, "", "", -1};

    EXPECT_TRUE(HardwareDetector::sendToWebsite("http://site.example", odd));

    EXPECT_EQ(machine().requests[0].body,
              R"({"profile_name":"My PC","os":"","processor":"","graphics_card":"","ram_gb":-9223372036854775808,)"
              R"("ram_type":"","ram_frequency":0,"storage_gb":9223372036854775807,"storage_type":"",)"
              R"("directx_version":"","gpu_memory":-1})");
}

TEST_F(SubmissionRequest, KeepsTheSlashAtTheEndOfTheBaseUrl) {
    EXPECT_FALSE(HardwareDetector::sendToWebsite("http://site.example/", hardware_));
    EXPECT_EQ(machine().requests[0].url.absoluteString(), "http://site.example//save-detected-hardware/");
    EXPECT_EQ(machine().log[0], "📤 Sending hardware data to: http://site.example//save-detected-hardware/");
}

TEST_F(SubmissionRequest, HandsAnEmptyBaseUrlToTheSession) {
    machine().website = [](const auto&) { return fakes::failed("unsupported URL"); };
    EXPECT_FALSE(HardwareDetector::sendToWebsite("", hardware_));
    EXPECT_EQ(machine().log,
              (Lines{"📤 Sending hardware data to: /save-detected-hardware/", "❌ Network error: unsupported URL",
                     "❌ Final error: Network error: unsupported URL"}));
}

TEST_F(SubmissionRequest, ABaseUrlThatDoesNotParseSendsNothing) {
    EXPECT_FALSE(HardwareDetector::sendToWebsite(" http://site.example", hardware_));
    EXPECT_EQ(machine().log, Lines{"❌ Error: Could not create JSON data or URL"});
    EXPECT_TRUE(machine().requests.empty());
}

TEST_F(SubmissionRequest, ARecordThatIsNotUtf8SendsNothing) {
    hardware_.processor = "\xFF";
    EXPECT_FALSE(HardwareDetector::sendToWebsite("http://site.example", hardware_));
    EXPECT_EQ(machine().log, Lines{"❌ Error: Could not create JSON data or URL"});
    EXPECT_TRUE(machine().requests.empty());
}

TEST_F(SubmissionRequest, ASuccessWithAnotherStatusStillLogsTheFinalError) {
    machine().website = [](const auto&) { return answered(201, R"({"success":true})"); };
    EXPECT_TRUE(HardwareDetector::sendToWebsite("http://site.example", hardware_));
    EXPECT_EQ(machine().log.back(), "❌ Final error: Server error: HTTP 201");
}

}  // namespace
