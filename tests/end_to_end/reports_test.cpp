// The two reports at the start: their id and date, and that the window waits for the first.
#include <fstream>
#include <future>

#include "tests/end_to_end/rig/keyboard.h"
#include "tests/end_to_end/rig/program_window.h"
#include "tests/end_to_end/rig/screenshot.h"
#include "tests/end_to_end/rig/window_manager.h"
#include "tests/end_to_end/surroundings.h"

namespace end_to_end {
namespace {

using Reports = Surroundings;

TEST_F(Reports, KeepDeviceIdAndDateAcrossStarts) {
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

TEST_F(Reports, TwoProgramsStartedAtOnceOnAFreshAccountShareOneDeviceId) {
    if (!std::ifstream("/etc/machine-id").ignore(32)) GTEST_SKIP() << "needs /etc/machine-id";
    ScriptedServer server(website({}), websitePort());
    const Program::Setting both = setting();
    Program first(both);
    Program second(both);
    ASSERT_TRUE(first.waitForLine("✅ Usage tracked successfully"));
    ASSERT_TRUE(second.waitForLine("✅ Usage tracked successfully"));

    EXPECT_EQ(first.log()[1], "📤 Device ID: " + valueIn(settingsFile(), "com.velmora.device_id"));
    EXPECT_EQ(second.log()[1], first.log()[1]);
}

TEST_F(Reports, TheFirstFrameIsOnScreenBeforeTheInstallReportIsAnswered) {
    std::promise<void> frameWasSeen;
    const ScriptedServer server(heldBack("/api/track-install/", frameWasSeen.get_future(), website({})), websitePort());
    WindowManager windowManager(session().display());
    const Program program(setting());
    ASSERT_TRUE(windowManager.waitForWindow());
    // It responds, so it does not wait for a report.
    ASSERT_TRUE(waitFor([&] { return AccessibleProgram(program.pid()).button("Detect Hardware").has_value(); }));
    EXPECT_EQ(program.log(), std::vector<std::string>());

    windowManager.showWindow();
    EXPECT_TRUE(server.waitForRequests(1));
    const std::string picture = home_.path() / "picture.png";
    const bool shown =
        waitFor([&] { return saveScreenshot(session().display(), picture) && showsTheBlueButton(picture); });
    frameWasSeen.set_value();
    EXPECT_TRUE(shown);
    // Otherwise the report timed out, and the frame came after that.
    EXPECT_TRUE(program.waitForLine("✅ Install tracked successfully"));
}

TEST_F(Reports, TheWindowDoesNotRespondWhileTheInstallReportIsOutstanding) {
    const ScriptedServer server(
        [](const RecordedRequest& request) -> Script {
            if (request.target() == "/api/track-install/") return {WaitUntilClientHasGone{}};
            return {Send{answerBytes(200, "noted")}};
        },
        websitePort());
    machine_.hold(sysctl);
    const Program program(setting());
    const auto shown = ProgramWindow::waitFor(session().display(), program.pid());
    ASSERT_TRUE(shown);
    ASSERT_TRUE(server.waitForRequests(1));

    // One of the four elements is the button. Only the first of three presses may count.
    shown->focus();
    const Keyboard keyboard(session().display());
    for (int element = 0; element < 4; ++element) {
        for (int time = 0; time < 3; ++time) keyboard.press("space");
        keyboard.press("Tab");
    }

    // The report times out after ten seconds. A responsive window would have run the command long before.
    ASSERT_TRUE(machine_.waitForRuns(1));
    EXPECT_TRUE(program.waitForLine("❌ Install tracking error: The request timed out.", std::chrono::seconds(3)));
    EXPECT_TRUE(waitFor([&] { return AccessibleProgram(program.pid()).button("Detecting...").has_value(); }));
    EXPECT_EQ(machine_.runs().size(), 1U);
}

}  // namespace
}  // namespace end_to_end
