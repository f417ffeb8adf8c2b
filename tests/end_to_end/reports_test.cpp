// The two reports of a program that starts: whose id and which day they carry.
#include <filesystem>
#include <fstream>

#include "tests/end_to_end/surroundings.h"

namespace end_to_end {
namespace {

using testSupport::answerBytes;
using testSupport::RecordedRequest;
using testSupport::Script;
using testSupport::ScriptedServer;
using testSupport::Send;

class Reports : public Surroundings {
  protected:
    // What a program reports of its use to a user of that locale; empty when nothing came.
    std::string usageReportOf(const std::string& locale) {
        const ScriptedServer server(website({}), websitePort());
        Program::Setting local = setting();
        local.environment["LC_ALL"] = locale;
        const Program program(local);
        return server.waitForRequests(2) ? server.requests()[1].body() : "";
    }
};

TEST_F(Reports, TheDeviceIdAndTheDateOutliveTheProgram) {
    ScriptedServer server(website({}), websitePort());
    for (int start = 0; start < 2; ++start) {
        Program program(setting());
        ASSERT_TRUE(program.waitForLine("✅ Usage tracked successfully"));
    }

    const std::vector<RecordedRequest> requests = server.requests();
    ASSERT_EQ(requests.size(), 4U);
    EXPECT_EQ(requests[0].body(), requests[2].body());
    EXPECT_EQ(requests[1].body(), requests[3].body());
    const std::string settings = settingsFile();
    EXPECT_EQ(valueIn(settings, "com.velmora.install_tracked"), "1");
    EXPECT_EQ(requests[3].body(), R"({"device_id":")" + valueIn(settings, "com.velmora.device_id") + R"(","date":")" +
                                      valueIn(settings, "com.velmora.last_tracked_date") + "\"}");
}

TEST_F(Reports, TheDateFollowsAThaiUsersCalendar) {
    const std::string report = usageReportOf("th_TH.UTF-8");
    EXPECT_NE(report.find(R"("date":"25)"), std::string::npos) << report;
}

TEST_F(Reports, TheDateFollowsAnEgyptianUsersDigits) {
    const std::string report = usageReportOf("ar_EG.UTF-8");
    EXPECT_NE(report.find(R"("date":"٢٠)"), std::string::npos) << report;
}

TEST_F(Reports, TwoProgramsStartedAtOnceOnAFreshAccountShareOneDeviceId) {
    if (!std::ifstream("/etc/machine-id").ignore(32)) GTEST_SKIP() << "this machine has no UUID that both could tell";
    ScriptedServer server(website({}), websitePort());
    const Program::Setting both = setting();
    Program first(both);
    Program second(both);
    ASSERT_TRUE(first.waitForLine("✅ Usage tracked successfully"));
    ASSERT_TRUE(second.waitForLine("✅ Usage tracked successfully"));

    EXPECT_EQ(first.log()[1], "📤 Device ID: " + valueIn(settingsFile(), "com.velmora.device_id"));
    EXPECT_EQ(second.log()[1], first.log()[1]);
}

TEST_F(Reports, ASettingsFolderThatCannotBeMadeLeavesOneIdForTheWholeRun) {
    ScriptedServer server(website({}), websitePort());
    std::ofstream(home_.path() / ".config") << "a file where the folder should be";
    Program program(setting());
    ASSERT_TRUE(program.waitForLine("✅ Usage tracked successfully"));

    const std::vector<RecordedRequest> requests = server.requests();
    ASSERT_EQ(requests.size(), 2U);
    const std::string member = requests[0].body().substr(requests[0].body().find("\"device_id\""), 50);
    EXPECT_NE(requests[1].body().find(member), std::string::npos) << requests[0].body() << requests[1].body();
}

TEST_F(Reports, ACorruptSettingsFileIsNoReasonToStop) {
    ScriptedServer server(website({}), websitePort());
    std::filesystem::create_directories(home_.path() / ".config/velmora");
    std::ofstream(home_.path() / ".config/velmora/hardware-detector.conf") << "\x01\xFF[[[\nno equals sign\n=\n";
    Program program(setting());
    ASSERT_TRUE(program.waitForLine("✅ Usage tracked successfully"));
    const std::string id = program.log()[1];
    program.terminate();
    ASSERT_TRUE(program.waitForExit());

    Program later(setting());
    ASSERT_TRUE(later.waitForLine("✅ Usage tracked successfully"));
    EXPECT_EQ(later.log()[1], id);
}

TEST_F(Reports, AnInstallReportThatIsNeverAnsweredIsGivenUpAndTheUsageGoesOut) {
    ScriptedServer server(
        [](const RecordedRequest& request) -> Script {
            if (request.target() == "/api/track-install/") return {testSupport::HoldOpen{}};
            return {Send{answerBytes(200, "noted")}};
        },
        websitePort());
    Program program(setting());

    ASSERT_TRUE(program.waitForLine("✅ Usage tracked successfully"));
    const std::vector<std::string> log = program.log();
    ASSERT_GE(log.size(), 5U);
    EXPECT_EQ(log[2], "❌ Install tracking error: The request timed out.");
    EXPECT_EQ(log[4], "⚠️ Install tracking may have failed. Check the logs above.");
}

}  // namespace
}  // namespace end_to_end
