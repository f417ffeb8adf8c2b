#include <gtest/gtest.h>

#include <algorithm>

#include "tests/fakes/fakes.h"
#include "tracking/app_tracker.h"

namespace {

using fakes::answered;
using fakes::machine;
using Lines = std::vector<std::string>;

constexpr const char* dateKey = "com.velmora.last_tracked_date";

class UsageReport : public testing::Test {
  protected:
    void SetUp() override { fakes::reset(); }

    // The log after the line that starts the usage report, which gets `answer`.
    static Lines linesFor(const platform::HttpResult& answer) {
        machine().website = [answer](const platform::HttpRequest& request) {
            return request.url.absoluteString().ends_with("/api/track-usage/") ? answer : answered(200, "ok");
        };
        AppTracker::trackUsage("http://site.example");
        fakes::waitForSession();
        const Lines& log = machine().log;
        const auto attempt =
            std::find(log.begin(), log.end(), "📤 Attempting to track usage to: http://site.example/api/track-usage/");
        EXPECT_NE(attempt, log.end());
        return Lines(attempt + 1, log.end());
    }
};

TEST_F(UsageReport, TheFirstStartReportsTheInstallStoresTheDateAndReportsTheUsage) {
    machine().website = [](const auto&) { return answered(200, "ok"); };

    AppTracker::trackUsage("http://site.example/");
    fakes::waitForSession();

    Lines events;
    for (const std::string& event : machine().events) {
        if (!event.starts_with("log ")) events.push_back(event);
    }
    EXPECT_EQ(events, (Lines{"store com.velmora.device_id", "request http://site.example/api/track-install/",
                             "store com.velmora.install_tracked", "store com.velmora.last_tracked_date",
                             "request http://site.example/api/track-usage/"}));
    EXPECT_EQ(machine().defaults[dateKey], "2026-11-20");
    EXPECT_EQ(machine().registryQueries, 1);
}

TEST_F(UsageReport, PostsDeviceIdAndDateWithATimeoutOfTenSeconds) {
    AppTracker::trackUsage("http://site.example");
    fakes::waitForSession();

    ASSERT_EQ(machine().requests.size(), 2U);
    const platform::HttpRequest& request = machine().requests[1];
    EXPECT_EQ(request.url.absoluteString(), "http://site.example/api/track-usage/");
    EXPECT_EQ(request.body, R"({"device_id":"PLATFORM-UUID","date":"2026-11-20"})");
    EXPECT_EQ(request.timeoutInterval, std::chrono::seconds(10));
    EXPECT_EQ(machine().datePatterns, (Lines{"yyyy-MM-dd", "yyyy-MM-dd"}));
}

TEST_F(UsageReport, ASecondStartOnTheSameDayReportsBothAgainAndLeavesTheDate) {
    machine().defaults[dateKey] = "2026-11-20";
    AppTracker::trackUsage("http://site.example");
    fakes::waitForSession();

    EXPECT_EQ(machine().requests.size(), 2U);
    const Lines& events = machine().events;
    EXPECT_EQ(std::count(events.begin(), events.end(), std::string("store ") + dateKey), 0);
}

TEST_F(UsageReport, AStartOnALaterDayReplacesTheDate) {
    machine().defaults[dateKey] = "2026-11-19";
    AppTracker::trackUsage("http://site.example");
    fakes::waitForSession();
    EXPECT_EQ(machine().defaults[dateKey], "2026-11-20");
    EXPECT_EQ(machine().requests.size(), 2U);
}

// Another start may store the date while this one waits for its install report.
TEST_F(UsageReport, TheStoredDateIsReadBeforeTheInstallReport) {
    machine().defaults[dateKey] = "2026-11-19";
    machine().website = [](const platform::HttpRequest& request) {
        if (request.url.absoluteString().ends_with("/api/track-install/")) machine().defaults[dateKey] = "2026-11-20";
        return answered(200, "ok");
    };
    AppTracker::trackUsage("http://site.example");
    fakes::waitForSession();
    const Lines& events = machine().events;
    EXPECT_EQ(std::count(events.begin(), events.end(), std::string("store ") + dateKey), 1);
}

TEST_F(UsageReport, AcrossMidnightTheReportMayCarryTheNextDay) {
    machine().dates = {"2026-11-20", "2026-11-21"};
    AppTracker::trackUsage("http://site.example");
    fakes::waitForSession();
    EXPECT_EQ(machine().defaults[dateKey], "2026-11-20");
    EXPECT_EQ(machine().requests[1].body, R"({"device_id":"PLATFORM-UUID","date":"2026-11-21"})");
}

TEST_F(UsageReport, AFailedInstallReportDoesNotStopIt) {
    machine().website = [](const auto&) { return fakes::failed("no network"); };
    AppTracker::trackUsage("http://site.example");
    fakes::waitForSession();
    EXPECT_EQ(machine().requests.size(), 2U);
}

TEST_F(UsageReport, AnInvalidAddressLogsOneLineAndTheDateIsStored) {
    AppTracker::trackUsage("a b");
    fakes::waitForSession();
    EXPECT_EQ(machine().log.size(), 7U);
    EXPECT_EQ(machine().log[5], "📤 Attempting to track usage to: a b/api/track-usage/");
    EXPECT_EQ(machine().log[6], "❌ Error: Could not create usage tracking JSON data or URL");
    EXPECT_TRUE(machine().requests.empty());
    EXPECT_EQ(machine().defaults[dateKey], "2026-11-20");
}

TEST_F(UsageReport, AnAcceptedAnswerIsLogged) {
    EXPECT_EQ(linesFor(answered(200, "noted")), (Lines{"✅ Usage tracked successfully", "   Response: noted"}));
}

TEST_F(UsageReport, AnAcceptedAnswerThatIsNotUtf8IsNotLogged) { EXPECT_EQ(linesFor(answered(200, "\xFF")), Lines{}); }

TEST_F(UsageReport, AnotherStatusIsLoggedWithItsBodyIfUtf8) {
    EXPECT_EQ(linesFor(answered(201, "made")),
              (Lines{"⚠️ Usage tracking returned status: 201", "   Response: made"}));
    fakes::reset();
    EXPECT_EQ(linesFor(answered(500, "\xFF")), Lines{"⚠️ Usage tracking returned status: 500"});
}

TEST_F(UsageReport, ATransportErrorIsLoggedWithoutDetails) {
    EXPECT_EQ(linesFor(fakes::failed("no network")), Lines{"❌ Usage tracking error: no network"});
}

}  // namespace
