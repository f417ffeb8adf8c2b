// Faults of the desktop: missing displays, buses and signals.
#include "tests/end_to_end/rig/keyboard.h"
#include "tests/end_to_end/rig/program_window.h"
#include "tests/end_to_end/surroundings.h"

namespace end_to_end {
namespace {

class DesktopFault : public Surroundings {
  protected:
    // By keyboard, since the program exports no elements here.
    void expectDetectionByKeyboard(const Program::Setting& setting) {
        const ScriptedServer server(website({}), websitePort());
        Program program(setting);
        const auto shown = ProgramWindow::waitFor(session().display(), program.pid());
        ASSERT_TRUE(shown);
        shown->focus();
        ASSERT_TRUE(program.waitForLine("✅ Usage tracked successfully"));
        Keyboard keyboard(session().display());
        keyboard.press("Tab");
        keyboard.press("space");
        EXPECT_TRUE(machine_.waitForRuns(5));
        shown->askToClose();
        EXPECT_EQ(program.waitForExit(), success);
    }
};

TEST_F(DesktopFault, AParentThatIgnoresSigchldDoesNotChangeTheOutcome) {
    const ScriptedServer server(website({Send{answerBytes(200, stored)}}), websitePort());
    Program::Setting ignoring = setting();
    ignoring.arguments = {"--ignore-signal=CHLD", ignoring.path};
    ignoring.path = "/usr/bin/env";
    Program program(ignoring);
    const AccessibleProgram window(program.pid());
    EXPECT_TRUE(press(window, "Detect Hardware"));
    EXPECT_TRUE(press(window, "Send to Website"));
    EXPECT_EQ(program.waitForExit(), success);
    EXPECT_TRUE(program.waitForLine("✅ Opened URL: " + base() + "/results?hardware_id=42"));
}

TEST_F(DesktopFault, WithoutAnAccessibilityBusTheKeyboardStillWorks) {
    Program::Setting busless = setting();
    busless.environment["AT_SPI_BUS_ADDRESS"] = "unix:path=/nowhere/at/all";
    expectDetectionByKeyboard(busless);
}

TEST_F(DesktopFault, WithoutASessionBusTheKeyboardStillWorks) {
    Program::Setting busless = setting();
    busless.environment["DBUS_SESSION_BUS_ADDRESS"] = "unix:path=/nowhere/at/all";
    expectDetectionByKeyboard(busless);
}

TEST_F(DesktopFault, WithoutADisplayTheProgramReportsAnErrorAndEnds) {
    for (const char* display : {"", ":99", "nowhere.invalid:0"}) {
        Program::Setting displayless = setting();
        displayless.environment["DISPLAY"] = display;
        Program program(displayless);
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
