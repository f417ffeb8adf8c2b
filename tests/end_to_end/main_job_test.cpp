// The main job: detect, show the rows, send, open the page.
#include <future>

#include "tests/end_to_end/rig/announcements.h"
#include "tests/end_to_end/rig/keyboard.h"
#include "tests/end_to_end/rig/program_window.h"
#include "tests/end_to_end/surroundings.h"

namespace end_to_end {
namespace {

using MainJob = Surroundings;

TEST_F(MainJob, DetectsListsSendsOpensThePageAndQuits) {
    ScriptedServer server(website({Send{answerBytes(200, stored)}}), websitePort());
    Program program(setting());
    const AccessibleProgram window(program.pid());

    ASSERT_TRUE(press(window, "Detect Hardware"));
    ASSERT_TRUE(shows(window, "Hardware detected successfully!")) << window.tree();
    for (const char* text : {"OS:", "macOS", "Processor:", "Apple M1 Pro Max", "Graphics Card:", "Apple M1 GPU 4GB",
                             "RAM:", "16 GB DDR4", "Storage:", "494 GB SSD"}) {
        EXPECT_TRUE(window.label(text)) << text << "\n" << window.tree();
    }
    EXPECT_EQ(machine_.runs(),
              (std::vector<std::string>{
                  "/usr/sbin/sysctl -n machdep.cpu.brand_string", "/usr/sbin/system_profiler SPHardwareDataType",
                  "/usr/sbin/sysctl -n hw.memsize", "/usr/sbin/system_profiler SPDisplaysDataType", "/bin/df -h /"}));

    ASSERT_TRUE(press(window, "Send to Website"));
    ASSERT_TRUE(opener_.waitForPages(1));
    EXPECT_EQ(opener_.pages(), std::vector<std::string>{base() + "/results?hardware_id=42"});
    EXPECT_EQ(program.waitForExit(), success);

    const std::string deviceId = valueIn(settingsFile(), "com.velmora.device_id");
    EXPECT_EQ(deviceId.size(), 36U);
    const std::vector<std::string> log = program.log();
    const std::vector<std::string> beforeUsage = {
        "📤 Attempting to track install to: " + base() + "/api/track-install/",
        "📤 Device ID: " + deviceId,
        "📥 Response status: 200",
        "✅ Install tracked successfully",
        R"(   Response: {"created": true})",
        "   📝 New install created",
        "📤 Attempting to track usage to: " + base() + "/api/track-usage/",
        "✅ Usage tracked successfully",
        "   Response: noted",
        "📤 Sending hardware data to: " + base() + "/save-detected-hardware/",
        "📥 Response status: 200",
        std::string("📥 Response body: ") + stored,
        "✅ Opened URL: " + base() + "/results?hardware_id=42",
        "📋 Hardware ID: 42",
    };
    EXPECT_EQ(log, beforeUsage);

    const std::vector<RecordedRequest> requests = server.requests();
    ASSERT_EQ(requests.size(), 3U);
    EXPECT_EQ(requests[0].body(), R"({"platform":"mac","device_id":")" + deviceId + "\"}");
    EXPECT_EQ(requests[2].requestLine(), "POST /save-detected-hardware/ HTTP/1.1");
    EXPECT_EQ(requests[2].valuesOf("Content-Type"), std::vector<std::string>{"application/json"});
    EXPECT_EQ(requests[2].body(),
              R"({"profile_name":"My PC","os":"macOS","processor":"Apple M1 Pro Max",)"
              R"("graphics_card":"Apple M1 GPU","ram_gb":16,"ram_type":"DDR4","ram_frequency":2666,)"
              R"("storage_gb":494,"storage_type":"SSD","directx_version":"Not Applicable","gpu_memory":4})");
}

TEST_F(MainJob, CanBeDoneWithTheKeyboardAlone) {
    ScriptedServer server(website({Send{answerBytes(200, stored)}}), websitePort());
    Program program(setting());
    const AccessibleProgram window(program.pid());
    const auto shown = ProgramWindow::waitFor(session().display(), program.pid());
    ASSERT_TRUE(shown);
    shown->focus();
    ASSERT_TRUE(program.waitForLine("✅ Usage tracked successfully"));

    Keyboard keyboard(session().display());
    const auto tabTo = [&](const std::string& name) {
        for (int presses = 0; presses < 6; ++presses) {
            const auto focused = window.focused();
            if (focused && focused->name() == name) return true;
            const std::string before = focused ? focused->name() + focused->role() : "";
            keyboard.press("Tab");
            if (!waitFor([&] {
                    const auto now = window.focused();
                    return now && now->name() + now->role() != before;
                })) {
                return false;
            }
        }
        return false;
    };
    ASSERT_TRUE(tabTo("Detect Hardware")) << window.tree();
    keyboard.press("space");
    ASSERT_TRUE(shows(window, "Hardware detected successfully!")) << window.tree();
    ASSERT_TRUE(tabTo("Send to Website")) << window.tree();
    keyboard.press("space");
    EXPECT_TRUE(opener_.waitForPages(1));
    EXPECT_EQ(program.waitForExit(), success);
}

TEST_F(MainJob, EachBannerIsAnnouncedToScreenReaders) {
    std::promise<void> sendingWasAnnounced;
    const ScriptedServer server(
        heldBack("/save-detected-hardware/", sendingWasAnnounced.get_future(), website({Send{answerBytes(500, "{}")}})),
        websitePort());
    Program program(setting());
    const AccessibleProgram window(program.pid());
    ASSERT_TRUE(waitFor([&] { return window.button("Detect Hardware").has_value(); }));
    const Announcements announcements(program.pid());
    const auto heard = [&](std::size_t count) {
        return waitFor([&] { return announcements.words().size() >= count; });
    };

    EXPECT_TRUE(press(window, "Detect Hardware"));
    EXPECT_TRUE(heard(1));
    EXPECT_TRUE(press(window, "Send to Website"));
    EXPECT_TRUE(heard(2));
    sendingWasAnnounced.set_value();
    EXPECT_TRUE(heard(3));
    EXPECT_EQ(announcements.words(),
              (std::vector<std::string>{"Hardware detected successfully!", "Sending hardware data...",
                                        "Error: Failed to send hardware data. Check the console for details."}));
}

TEST_F(MainJob, ClosingTheWindowEndsTheProgramAtOnceWhileACommandHangs) {
    ScriptedServer server(website({}), websitePort());
    machine_.hold(sysctl);
    Program program(setting());
    const AccessibleProgram window(program.pid());
    ASSERT_TRUE(press(window, "Detect Hardware"));
    ASSERT_TRUE(machine_.waitForRuns(1));
    ASSERT_TRUE(waitFor([&] { return window.button("Detecting...").has_value(); }));

    const auto shown = ProgramWindow::waitFor(session().display(), program.pid());
    ASSERT_TRUE(shown);
    shown->askToClose();

    EXPECT_EQ(program.waitForExit(), success);
}

TEST_F(MainJob, CtrlQEndsTheProgramAtOnceWhileARequestHangs) {
    ScriptedServer server(website({HoldOpen{}}), websitePort());
    Program program(setting());
    const AccessibleProgram window(program.pid());
    ASSERT_TRUE(press(window, "Detect Hardware"));
    ASSERT_TRUE(press(window, "Send to Website"));
    ASSERT_TRUE(server.waitForRequests(3));

    const auto shown = ProgramWindow::waitFor(session().display(), program.pid());
    ASSERT_TRUE(shown);
    shown->focus();
    Keyboard(session().display()).press("Ctrl+q");

    EXPECT_EQ(program.waitForExit(), success);
}

}  // namespace
}  // namespace end_to_end
