// What becomes of the program when parts of the desktop are missing or misbehave.
#include "tests/end_to_end/rig/keyboard.h"
#include "tests/end_to_end/rig/program_window.h"
#include "tests/end_to_end/surroundings.h"

namespace end_to_end {
namespace {

using testSupport::answerBytes;
using testSupport::ScriptedServer;
using testSupport::Send;

constexpr ExitStatus success{ExitStatus::Kind::status, 0};
std::string page() { return base() + "/results?hardware_id=42"; }

class DesktopFault : public Surroundings {
  protected:
    // Does the main job; the log's lines after the answer's body.
    std::vector<std::string> linesAfterTheAnswer() {
        const ScriptedServer server(website({Send{answerBytes(200, stored)}}), websitePort());
        Program program(setting());
        EXPECT_EQ(program.failure(), std::nullopt);
        const AccessibleProgram window(program.pid());
        EXPECT_TRUE(press(window, "Detect Hardware"));
        EXPECT_TRUE(press(window, "Send to Website"));
        EXPECT_TRUE(shows(window, "Hardware data sent successfully! Opening website..."));
        EXPECT_EQ(program.waitForExit(), success);
        std::vector<std::string> log = program.log();
        while (!log.empty() && log.front() != std::string("📥 Response body: ") + stored) log.erase(log.begin());
        if (!log.empty()) log.erase(log.begin());
        return log;
    }

    // The keyboard's way, where there is nobody to ask for elements.
    void expectDetectionByKeyboard(const Program::Setting& setting) {
        const ScriptedServer server(website({}), websitePort());
        Program program(setting);
        ASSERT_EQ(program.failure(), std::nullopt);
        const auto shown = ProgramWindow::waitFor(session().display(), program.pid());
        ASSERT_TRUE(shown);
        shown->giveKeyboard();
        ASSERT_TRUE(program.waitForLine("✅ Usage tracked successfully"));
        Keyboard keyboard(session().display());
        keyboard.press("Tab");
        keyboard.press("space");
        EXPECT_TRUE(machine_.waitForRuns(5));
        shown->askToClose();
        EXPECT_EQ(program.waitForExit(), success);
    }
};

TEST_F(DesktopFault, AnIgnoredSignalOfAParentDoesNotMakeAPageThatOpenedAFailure) {
    const ScriptedServer server(website({Send{answerBytes(200, stored)}}), websitePort());
    Program::Setting deaf = setting();
    deaf.arguments = {"--ignore-signal=CHLD", deaf.path};
    deaf.path = "/usr/bin/env";
    Program program(deaf);
    const AccessibleProgram window(program.pid());
    EXPECT_TRUE(press(window, "Detect Hardware"));
    EXPECT_TRUE(press(window, "Send to Website"));
    EXPECT_EQ(program.waitForExit(), success);
    EXPECT_TRUE(program.waitForLine("✅ Opened URL: " + page()));
}

TEST_F(DesktopFault, AnOpenerThatHangsCountsAsABrowser) {
    opener_.hang();
    EXPECT_EQ(linesAfterTheAnswer(), (std::vector<std::string>{"✅ Opened URL: " + page(), "📋 Hardware ID: 42"}));
}

TEST_F(DesktopFault, AnOpenerThatFailsIsTold) {
    opener_.exitWith(4);
    EXPECT_EQ(linesAfterTheAnswer(), std::vector<std::string>{"❌ Failed to open URL: " + page()});
}

TEST_F(DesktopFault, AMissingOpenerIsTold) {
    opener_.makeMissing();
    EXPECT_EQ(linesAfterTheAnswer(), std::vector<std::string>{"❌ Failed to open URL: " + page()});
}

TEST_F(DesktopFault, WithoutAnAccessibilityBusTheKeyboardStillWorks) {
    Program::Setting deaf = setting();
    deaf.environment["AT_SPI_BUS_ADDRESS"] = "unix:path=/nowhere/at/all";
    expectDetectionByKeyboard(deaf);
}

TEST_F(DesktopFault, WithoutASessionBusTheKeyboardStillWorks) {
    Program::Setting busless = setting();
    busless.environment["DBUS_SESSION_BUS_ADDRESS"] = "unix:path=/nowhere/at/all";
    expectDetectionByKeyboard(busless);
}

TEST_F(DesktopFault, WithoutADisplayTheProgramSaysSoAndEnds) {
    for (const char* display : {"", ":99", "nowhere.invalid:0"}) {
        Program::Setting blind = setting();
        blind.environment["DISPLAY"] = display;
        Program program(blind);
        EXPECT_EQ(program.waitForExit(), (ExitStatus{ExitStatus::Kind::status, 1})) << display;
        EXPECT_EQ(program.bytes(Stream::output), "") << display;
        EXPECT_NE(program.bytes(Stream::error).find("display"), std::string::npos) << program.bytes(Stream::error);
    }
}

TEST_F(DesktopFault, ADisplayThatGoesAwayEndsTheProgramAndKeepsTheId) {
    const ScriptedServer server(website({}), websitePort());
    Program program(setting());
    ASSERT_TRUE(program.waitForLine("✅ Usage tracked successfully"));
    session().endDisplay();
    EXPECT_EQ(program.waitForExit(), (ExitStatus{ExitStatus::Kind::status, 1}));
    EXPECT_EQ("📤 Device ID: " + valueIn(settingsFile(), "com.velmora.device_id"), program.log().at(1));
}

}  // namespace
}  // namespace end_to_end
