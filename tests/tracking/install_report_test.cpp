#include <gtest/gtest.h>

#include "tests/fakes/fakes.h"
#include "tracking/app_tracker.h"

namespace {

using fakes::answered;
using fakes::machine;
using Lines = std::vector<std::string>;

constexpr const char* flag = "com.velmora.install_tracked";
constexpr const char* warning = "⚠️ Install tracking may have failed. Check the logs above.";

class InstallReport : public testing::Test {
  protected:
    void SetUp() override { fakes::reset(); }

    // The log after its first two lines, which come before the request.
    static Lines linesFor(const platform::HttpResult& answer) {
        machine().website = [answer](const auto&) { return answer; };
        AppTracker::trackInstall("http://site.example");
        Lines lines = machine().log;
        EXPECT_EQ(lines[0], "📤 Attempting to track install to: http://site.example/api/track-install/");
        EXPECT_EQ(lines[1], "📤 Device ID: PLATFORM-UUID");
        lines.erase(lines.begin(), lines.begin() + 2);
        return lines;
    }
};

TEST_F(InstallReport, PostsPlatformAndDeviceIdWithATimeoutOfTenSeconds) {
    AppTracker::trackInstall("http://site.example");

    ASSERT_EQ(machine().requests.size(), 1U);
    const platform::HttpRequest& request = machine().requests[0];
    EXPECT_EQ(request.url.absoluteString(), "http://site.example/api/track-install/");
    EXPECT_EQ(request.body, R"({"platform":"mac","device_id":"PLATFORM-UUID"})");
    EXPECT_EQ(request.timeoutInterval, std::chrono::seconds(10));
}

TEST_F(InstallReport, StripsEverySlashAtBothEndsOfTheAddressAndNothingElse) {
    AppTracker::trackInstall("//http://site.example/a//b///");
    EXPECT_EQ(machine().log[0], "📤 Attempting to track install to: http://site.example/a//b/api/track-install/");
}

TEST_F(InstallReport, HandsAnEmptyAddressToTheSession) {
    AppTracker::trackInstall("");
    EXPECT_EQ(machine().requests.at(0).url.absoluteString(), "/api/track-install/");
}

TEST_F(InstallReport, AnInvalidAddressLogsThreeLinesAndSendsNothing) {
    AppTracker::trackInstall("http://a b");
    EXPECT_EQ(machine().log, (Lines{"📤 Attempting to track install to: http://a b/api/track-install/",
                                    "📤 Device ID: PLATFORM-UUID", "❌ Error: Could not create tracking JSON data or URL",
                                    R"(   - JSON data: ["platform": "mac", "device_id": "PLATFORM-UUID"])",
                                    "   - URL string: http://a b/api/track-install/"}));
    EXPECT_TRUE(machine().requests.empty());
}

TEST_F(InstallReport, ANewInstallIsLoggedAndStored) {
    EXPECT_EQ(linesFor(answered(200, R"({"created": true})")),
              (Lines{"📥 Response status: 200", "✅ Install tracked successfully", R"(   Response: {"created": true})",
                     "   📝 New install created"}));
    EXPECT_EQ(machine().defaults[flag], "1");
}

TEST_F(InstallReport, AnInstallIsLoggedAsKnownUnlessCreatedIsTrue) {
    for (const char* body : {R"({"created":false})", "{}", R"({"created":"true"})", R"({"created":null})",
                             R"({"created":1})", R"({"created":1.0})"}) {
        fakes::reset();
        EXPECT_EQ(linesFor(answered(200, body)).back(), "   ♻️ Install already existed, updated") << body;
        EXPECT_EQ(machine().defaults[flag], "1");
    }
}

TEST_F(InstallReport, ABodyThatIsNoJsonObjectIsAcceptedWithoutACreatedLine) {
    for (const std::string body : {"thanks", "", "[true]"}) {
        fakes::reset();
        EXPECT_EQ(linesFor(answered(200, body)),
                  (Lines{"📥 Response status: 200", "✅ Install tracked successfully", "   Response: " + body}));
        EXPECT_EQ(machine().defaults[flag], "1");
    }
}

TEST_F(InstallReport, Status200WithABodyThatIsNotUtf8CountsAsNotTracked) {
    EXPECT_EQ(linesFor(answered(200, "\xFF")), (Lines{"📥 Response status: 200", warning}));
    EXPECT_EQ(machine().defaults.count(flag), 0U);
}

TEST_F(InstallReport, EveryOtherStatusIsAFailure) {
    for (const int status : {201, 204, 302, 404, 500}) {
        fakes::reset();
        const std::string code = std::to_string(status);
        EXPECT_EQ(linesFor(answered(status, R"({"created":true})")),
                  (Lines{"📥 Response status: " + code, "⚠️ Install tracking returned status: " + code,
                         R"(   Response: {"created":true})", warning}));
        EXPECT_EQ(machine().defaults.count(flag), 0U);
    }
}

TEST_F(InstallReport, AnotherStatusLogsNoBodyThatIsNotUtf8) {
    EXPECT_EQ(linesFor(answered(500, "\xFF")),
              (Lines{"📥 Response status: 500", "⚠️ Install tracking returned status: 500", warning}));
}

TEST_F(InstallReport, ATransportErrorIsLoggedWithItsDetails) {
    EXPECT_EQ(linesFor(fakes::failed("no network", "all about it")),
              (Lines{"❌ Install tracking error: no network", "   Error details: all about it", warning}));
}

TEST_F(InstallReport, IsSentAgainAfterASuccess) {
    machine().defaults[flag] = "1";
    AppTracker::trackInstall("http://site.example");
    EXPECT_EQ(machine().requests.size(), 1U);
}

}  // namespace
