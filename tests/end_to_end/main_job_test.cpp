// The main job, done with the real program from outside: detect, read the rows, send, have the page opened.
#include <future>

#include "tests/end_to_end/rig/announcements.h"
#include "tests/end_to_end/rig/keyboard.h"
#include "tests/end_to_end/rig/program_window.h"
#include "tests/end_to_end/surroundings.h"

namespace end_to_end {
namespace {

using testSupport::answerBytes;
using testSupport::RecordedRequest;
using testSupport::Script;
using testSupport::ScriptedServer;
using testSupport::Send;

using MainJob = Surroundings;

TEST_F(MainJob, DetectsListsSendsOpensThePageAndQuits) {
    ScriptedServer server(website({Send{answerBytes(200, stored)}}), websitePort());
    Program program(setting());
    ASSERT_EQ(program.failure(), std::nullopt);
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
    ASSERT_TRUE(opener_.waitForCalls(1));
    EXPECT_EQ(opener_.calls(), (std::vector<std::vector<std::string>>{{base() + "/results?hardware_id=42"}}));
    EXPECT_EQ(program.waitForExit(), (ExitStatus{ExitStatus::Kind::status, 0}));

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
    ASSERT_EQ(program.failure(), std::nullopt);
    const AccessibleProgram window(program.pid());
    const auto shown = ProgramWindow::waitFor(session().display(), program.pid());
    ASSERT_TRUE(shown);
    shown->giveKeyboard();
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
    EXPECT_TRUE(opener_.waitForCalls(1));
    EXPECT_EQ(program.waitForExit(), (ExitStatus{ExitStatus::Kind::status, 0}));
}

TEST_F(MainJob, AScreenReaderIsToldOfEachBanner) {
    std::promise<void> sendingWasHeard;
    ScriptedServer server(
        [&, heard = sendingWasHeard.get_future().share()](const RecordedRequest& request) -> Script {
            if (request.target() == "/save-detected-hardware/") heard.wait();
            return {Send{answerBytes(500, "{}")}};
        },
        websitePort());
    Program program(setting());
    ASSERT_EQ(program.failure(), std::nullopt);
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
    sendingWasHeard.set_value();
    EXPECT_TRUE(heard(3));
    EXPECT_EQ(announcements.words(),
              (std::vector<std::string>{"Hardware detected successfully!", "Sending hardware data...",
                                        "Error: Failed to send hardware data. Check the console for details."}));
}

TEST_F(MainJob, AFailureKeepsTheProgramRunningWithAnErrorBanner) {
    ScriptedServer server(website({Send{answerBytes(500, R"({"success": false, "error": "disk full"})")}}),
                          websitePort());
    Program program(setting());
    ASSERT_EQ(program.failure(), std::nullopt);
    const AccessibleProgram window(program.pid());

    ASSERT_TRUE(press(window, "Detect Hardware"));
    ASSERT_TRUE(press(window, "Send to Website"));

    ASSERT_TRUE(shows(window, "Error: Failed to send hardware data. Check the console for details."));
    EXPECT_TRUE(program.waitForLine("❌ Server returned status: 500"));
    EXPECT_TRUE(program.waitForLine("❌ Server returned error: disk full"));
    EXPECT_TRUE(program.waitForLine("❌ Final error: disk full"));
    EXPECT_TRUE(program.waitForLine("❌ Failed to send hardware data. Check the console output above for details."));
    EXPECT_TRUE(opener_.calls().empty());
    EXPECT_TRUE(window.button("Send to Website")->enabled());
}

TEST_F(MainJob, AConnectionThatDropsGetsTheRequestOnce) {
    ScriptedServer server(website({}), websitePort());
    Program program(setting());
    ASSERT_EQ(program.failure(), std::nullopt);
    const AccessibleProgram window(program.pid());

    ASSERT_TRUE(press(window, "Detect Hardware"));
    ASSERT_TRUE(press(window, "Send to Website"));

    ASSERT_TRUE(program.waitForLine("❌ Final error: Network error: The network connection was lost."));
    EXPECT_EQ(server.requests().size(), 3U);  // Install, usage, and one submission.
}

TEST_F(MainJob, TheAddressTypedIsTheOneUsed) {
    ScriptedServer server(website({Send{answerBytes(200, stored)}}), websitePort());
    Program program(setting());
    ASSERT_EQ(program.failure(), std::nullopt);
    const AccessibleProgram window(program.pid());
    ASSERT_TRUE(press(window, "Detect Hardware"));
    ASSERT_TRUE(shows(window, "Hardware detected successfully!"));

    ASSERT_TRUE(window.field());
    EXPECT_EQ(window.field()->text(), base());
    ASSERT_TRUE(window.field()->setText(""));
    ASSERT_TRUE(waitFor([&] { return !window.button("Send to Website")->enabled(); }));
    EXPECT_TRUE(window.button("Detect Hardware")->enabled());
    ASSERT_TRUE(window.field()->setText(base() + "/"));
    ASSERT_TRUE(press(window, "Send to Website"));

    ASSERT_TRUE(program.waitForLine("📤 Sending hardware data to: " + base() + "//save-detected-hardware/"));
    EXPECT_EQ(program.waitForExit(), (ExitStatus{ExitStatus::Kind::status, 0}));
    EXPECT_EQ(server.requests().back().target(), "//save-detected-hardware/");
}

TEST_F(MainJob, ClosingTheWindowEndsTheProgramAtOnceWhileACommandHangs) {
    ScriptedServer server(website({}), websitePort());
    machine_.hold(sysctl);
    Program program(setting());
    ASSERT_EQ(program.failure(), std::nullopt);
    const AccessibleProgram window(program.pid());
    ASSERT_TRUE(press(window, "Detect Hardware"));
    ASSERT_TRUE(machine_.waitForRuns(1));
    ASSERT_TRUE(waitFor([&] { return window.button("Detecting...").has_value(); }));

    const auto shown = ProgramWindow::waitFor(session().display(), program.pid());
    ASSERT_TRUE(shown);
    shown->askToClose();

    EXPECT_EQ(program.waitForExit(), (ExitStatus{ExitStatus::Kind::status, 0}));
}

TEST_F(MainJob, CtrlQEndsTheProgramAtOnceWhileARequestHangs) {
    ScriptedServer server(website({testSupport::HoldOpen{}}), websitePort());
    Program program(setting());
    ASSERT_EQ(program.failure(), std::nullopt);
    const AccessibleProgram window(program.pid());
    ASSERT_TRUE(press(window, "Detect Hardware"));
    ASSERT_TRUE(press(window, "Send to Website"));
    ASSERT_TRUE(server.waitForRequests(3));

    const auto shown = ProgramWindow::waitFor(session().display(), program.pid());
    ASSERT_TRUE(shown);
    shown->giveKeyboard();
    Keyboard(session().display()).press("Ctrl+q");

    EXPECT_EQ(program.waitForExit(), (ExitStatus{ExitStatus::Kind::status, 0}));
}

TEST_F(MainJob, AMachineWithoutAnyOfTheCommandsShowsTheFixedValues) {
    ScriptedServer server(website({}), websitePort());
    machine_.makeMissing(sysctl);
    machine_.makeNotExecutable(systemProfiler);
    machine_.makeMissing(df);
    Program program(setting());
    ASSERT_EQ(program.failure(), std::nullopt);
    const AccessibleProgram window(program.pid());

    ASSERT_TRUE(press(window, "Detect Hardware"));
    ASSERT_TRUE(shows(window, "Hardware detected successfully!"));
    for (const char* text : {"macOS", "Unknown", "Unknown 4GB", "8 GB DDR4", "512 GB SSD"}) {
        EXPECT_TRUE(window.label(text)) << text << "\n" << window.tree();
    }
}

TEST_F(MainJob, AnOpenerThatFailsIsToldAndStillASuccess) {
    ScriptedServer server(website({Send{answerBytes(200, stored)}}), websitePort());
    opener_.exitWith(3);
    Program program(setting());
    const AccessibleProgram window(program.pid());
    ASSERT_TRUE(press(window, "Detect Hardware"));
    ASSERT_TRUE(press(window, "Send to Website"));

    EXPECT_TRUE(program.waitForLine("❌ Failed to open URL: " + base() + "/results?hardware_id=42"));
    EXPECT_EQ(program.waitForExit(), (ExitStatus{ExitStatus::Kind::status, 0}));
    EXPECT_EQ(program.log().back(), "❌ Failed to open URL: " + base() + "/results?hardware_id=42");
}

TEST_F(MainJob, ADesktopWithoutAnOpenerIsToldAndStillASuccess) {
    ScriptedServer server(website({Send{answerBytes(200, stored)}}), websitePort());
    opener_.makeMissing();
    Program program(setting());
    const AccessibleProgram window(program.pid());
    ASSERT_TRUE(press(window, "Detect Hardware"));
    ASSERT_TRUE(press(window, "Send to Website"));

    EXPECT_TRUE(program.waitForLine("❌ Failed to open URL: " + base() + "/results?hardware_id=42"));
    EXPECT_EQ(program.waitForExit(), (ExitStatus{ExitStatus::Kind::status, 0}));
}

TEST_F(MainJob, WhatCommandsComplainReachesNeitherTheRecordNorTheLog) {
    ScriptedServer server(website({}), websitePort());
    machine_.script(sysctl, "echo complaint >&2; echo 17179869184; exit 1");
    Program program(setting());
    const AccessibleProgram window(program.pid());
    ASSERT_TRUE(press(window, "Detect Hardware"));

    ASSERT_TRUE(shows(window, "16 GB DDR4")) << window.tree();
    EXPECT_TRUE(window.label("17179869184"));
    EXPECT_EQ(program.bytes(Stream::output).find("complaint"), std::string::npos);
    EXPECT_EQ(program.bytes(Stream::error).find("complaint"), std::string::npos);
}

}  // namespace
}  // namespace end_to_end
