// How long the program waits, and what its window does and does not do meanwhile.
#include "tests/end_to_end/rig/keyboard.h"
#include "tests/end_to_end/rig/program_window.h"
#include "tests/end_to_end/surroundings.h"

// Last, since its macros (None, Bool) would break the test library's headers.
#include <X11/Xutil.h>

#include "tests/end_to_end/rig/display_connection.h"

namespace end_to_end {
namespace {

using namespace std::chrono_literals;

using testSupport::answerBytes;
using testSupport::RecordedRequest;
using testSupport::Script;
using testSupport::ScriptedServer;
using testSupport::Send;
using testSupport::SendDripping;

using Waiting = Surroundings;

// An answer that comes byte by byte and takes that long as a whole.
SendDripping drippingFor(std::chrono::milliseconds whole, const std::string& body) {
    const std::string bytes = answerBytes(200, body);
    return {bytes, whole / bytes.size()};
}

TEST_F(Waiting, AnAnswerToTheInstallReportMayTakeLongerThanTheIntervalAsLongAsBytesCome) {
    const ScriptedServer server(
        [](const RecordedRequest& request) -> Script {
            if (request.target() == "/api/track-install/") return {drippingFor(25s, R"({"created": true})")};
            return {Send{answerBytes(200, "noted")}};
        },
        websitePort());
    const Program program(setting());
    ASSERT_TRUE(program.waitForLine("✅ Usage tracked successfully"));
    const std::vector<std::string> log = program.log();
    ASSERT_GE(log.size(), 7U);
    EXPECT_EQ(log[5], "   📝 New install created");
    EXPECT_EQ(log[6], "📤 Attempting to track usage to: " + base() + "/api/track-usage/");
}

TEST_F(Waiting, AnAnswerToASubmissionMayTakeLongerThanTheIntervalAsLongAsBytesCome) {
    const ScriptedServer server(website({drippingFor(100s, stored)}), websitePort());
    Program program(setting());
    const AccessibleProgram window(program.pid());
    ASSERT_TRUE(press(window, "Detect Hardware"));
    ASSERT_TRUE(press(window, "Send to Website"));
    EXPECT_EQ(program.waitForExit(200s), (ExitStatus{ExitStatus::Kind::status, 0}));
    EXPECT_EQ(program.log().back(), "📋 Hardware ID: 42");
}

TEST_F(Waiting, TheProgramEndsTwoSecondsAfterASuccessAndNotMuchLater) {
    const ScriptedServer server(website({Send{answerBytes(200, stored)}}), websitePort());
    Program program(setting());
    const AccessibleProgram window(program.pid());
    ASSERT_TRUE(press(window, "Detect Hardware"));
    ASSERT_TRUE(shows(window, "Hardware detected successfully!"));
    const auto pressed = std::chrono::steady_clock::now();
    ASSERT_TRUE(press(window, "Send to Website"));
    ASSERT_TRUE(opener_.waitForCalls(1));
    EXPECT_EQ(program.waitForExit(2s + 10s), (ExitStatus{ExitStatus::Kind::status, 0}));
    EXPECT_GE(std::chrono::steady_clock::now() - pressed, 2s);
}

TEST_F(Waiting, TheWindowDoesNotRespondWhileTheInstallReportIsOutstanding) {
    const ScriptedServer server(
        [](const RecordedRequest& request) -> Script {
            if (request.target() == "/api/track-install/") return {testSupport::WaitUntilClientHasGone{}};
            return {Send{answerBytes(200, "noted")}};
        },
        websitePort());
    const Program program(setting());
    const auto shown = ProgramWindow::waitFor(session().display(), program.pid());
    ASSERT_TRUE(shown);
    ASSERT_TRUE(server.waitForRequests(1));

    // Whichever element has the keyboard: the button is one of these.
    shown->giveKeyboard();
    Keyboard keyboard(session().display());
    for (int element = 0; element < 4; ++element) {
        ASSERT_TRUE(keyboard.press("space"));
        ASSERT_TRUE(keyboard.press("Tab"));
    }

    // The report is given up after ten seconds. A window that responded would have run the command long before.
    ASSERT_TRUE(machine_.waitForRuns(1));
    EXPECT_TRUE(program.waitForLine("❌ Install tracking error: The request timed out.", 3s));
}

// The one window on the display. Takes it off the screen and brings it back, as a window manager does.
void minimiseAndRestore(const std::string& displayName) {
    const DisplayConnection connection = connectToDisplay(displayName);
    Display* display = connection.get();
    const Atom state = XInternAtom(display, "WM_STATE", 0);
    ::Window root = 0;
    ::Window parent = 0;
    ::Window* windows = nullptr;
    unsigned count = 0;
    ASSERT_NE(XQueryTree(display, DefaultRootWindow(display), &root, &parent, &windows, &count), 0);
    for (unsigned at = 0; at < count; ++at) {
        XWindowAttributes attributes{};
        XGetWindowAttributes(display, windows[at], &attributes);
        if (attributes.map_state != IsViewable || attributes.c_class != InputOutput) continue;
        const auto become = [&](long newState) {
            const long data[] = {newState, 0};
            XChangeProperty(display, windows[at], state, state, 32, PropModeReplace,
                            reinterpret_cast<const unsigned char*>(data), 2);
        };
        XUnmapWindow(display, windows[at]);
        become(IconicState);
        XSync(display, 0);
        become(NormalState);
        XMapWindow(display, windows[at]);
        XSync(display, 0);
    }
    XFree(windows);
}

TEST_F(Waiting, RestoringTheMinimisedWindowReportsNothing) {
    const ScriptedServer server(website({}), websitePort());
    const Program program(setting());
    ASSERT_TRUE(ProgramWindow::waitFor(session().display(), program.pid()));
    ASSERT_TRUE(program.waitForLine("✅ Usage tracked successfully"));

    minimiseAndRestore(session().display());

    // Once it has shown this it has long been painted again, which is when it would report.
    const AccessibleProgram window(program.pid());
    ASSERT_TRUE(press(window, "Detect Hardware"));
    ASSERT_TRUE(shows(window, "Hardware detected successfully!"));
    EXPECT_EQ(server.requests().size(), 2U);
}

}  // namespace
}  // namespace end_to_end
