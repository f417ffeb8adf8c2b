// Clicks and keys that come while the program is busy: each counts for what is on screen once those before it are done.
#include <algorithm>
#include <future>

#include "tests/end_to_end/rig/keyboard.h"
#include "tests/end_to_end/rig/mouse.h"
#include "tests/end_to_end/rig/program_window.h"
#include "tests/end_to_end/surroundings.h"

namespace end_to_end {
namespace {

using testSupport::answerBytes;
using testSupport::RecordedRequest;
using testSupport::Script;
using testSupport::ScriptedServer;
using testSupport::Send;

constexpr const char* refusal = R"({"success": false, "error": "no"})";

class ImpatientPerson : public Surroundings {
  protected:
    static std::ptrdiff_t submissionsTo(const ScriptedServer& server) {
        const std::vector<RecordedRequest> requests = server.requests();
        return std::count_if(requests.begin(), requests.end(), [](const RecordedRequest& request) {
            return request.target() == "/save-detected-hardware/";
        });
    }

    // Where the middle of a button is on the screen; waits for it.
    static std::optional<Point> placeOf(const AccessibleProgram& window, const std::string& name) {
        std::optional<Point> place;
        EXPECT_TRUE(waitFor([&] {
            const auto button = window.button(name);
            if (button) place = button->middle();
            return place.has_value();
        })) << name;
        return place;
    }
};

TEST_F(ImpatientPerson, ThreeClicksWhileTheFirstReportBlocksStartOneDetection) {
    // A program that is busy tells nobody where its button is; one that is not has it in the same place.
    const std::optional<Point> detect = [this] {
        const ScriptedServer server(website({}), websitePort());
        const Program program(setting());
        return placeOf(AccessibleProgram(program.pid()), "Detect Hardware");
    }();
    ASSERT_TRUE(detect);

    std::promise<void> release;
    const ScriptedServer server(
        [free = release.get_future().share()](const RecordedRequest& request) -> Script {
            if (request.target() == "/api/track-install/") free.wait();
            return {Send{answerBytes(200, "{}")}};
        },
        websitePort());
    Program program(setting());
    ASSERT_EQ(program.failure(), std::nullopt);
    ASSERT_TRUE(ProgramWindow::waitFor(session().display(), program.pid()));
    ASSERT_TRUE(waitFor([&] { return server.requests().size() == 1; }));

    Mouse mouse(session().display());
    for (int click = 0; click < 3; ++click) mouse.click(*detect);
    release.set_value();

    const AccessibleProgram window(program.pid());
    ASSERT_TRUE(shows(window, "Hardware detected successfully!")) << window.tree();
    ASSERT_TRUE(press(window, "Detect Hardware"));
    ASSERT_TRUE(waitFor([&] { return machine_.runs().size() >= 10; }));
    ASSERT_TRUE(shows(window, "Hardware detected successfully!")) << window.tree();
    EXPECT_EQ(machine_.runs().size(), 10U);
}

TEST_F(ImpatientPerson, ThreeClicksThatWaitStartOneSubmission) {
    const ScriptedServer server(website({Send{answerBytes(200, refusal)}}), websitePort());
    Program program(setting());
    const AccessibleProgram window(program.pid());
    ASSERT_TRUE(press(window, "Detect Hardware"));
    const std::optional<Point> send = placeOf(window, "Send to Website");
    ASSERT_TRUE(send);

    Mouse mouse(session().display());
    program.signal(SIGSTOP);
    for (int click = 0; click < 3; ++click) mouse.click(*send);
    program.signal(SIGCONT);
    ASSERT_TRUE(program.waitForLine("❌ Final error: no"));
    ASSERT_TRUE(press(window, "Send to Website"));
    ASSERT_TRUE(waitFor([&] { return submissionsTo(server) >= 2; }));
    ASSERT_TRUE(shows(window, "Error: Failed to send hardware data. Check the console for details."));
    EXPECT_EQ(submissionsTo(server), 2);
}

TEST_F(ImpatientPerson, AKeyThatEmptiesTheAddressAndAPressSendNothing) {
    const ScriptedServer server(website({Send{answerBytes(200, refusal)}}), websitePort());
    Program program(setting());
    const AccessibleProgram window(program.pid());
    ASSERT_TRUE(press(window, "Detect Hardware"));
    const std::optional<Point> send = placeOf(window, "Send to Website");
    const auto shown = ProgramWindow::waitFor(session().display(), program.pid());
    ASSERT_TRUE(send && shown);
    shown->giveKeyboard();
    Mouse mouse(session().display());
    Keyboard keyboard(session().display());
    mouse.click(*window.field()->middle());
    ASSERT_TRUE(waitFor([&] { return window.field()->focused(); }));

    program.signal(SIGSTOP);
    keyboard.press("Ctrl+a");
    keyboard.press("Delete");
    mouse.click(*send);
    program.signal(SIGCONT);
    ASSERT_TRUE(waitFor([&] { return window.field()->text().empty(); }));
    ASSERT_TRUE(window.field()->setText(base()));
    ASSERT_TRUE(press(window, "Send to Website"));
    ASSERT_TRUE(program.waitForLine("❌ Final error: no"));
    EXPECT_EQ(submissionsTo(server), 1);
    EXPECT_FALSE(program.waitForLine("📤 Sending hardware data to: /save-detected-hardware/", {}));
}

}  // namespace
}  // namespace end_to_end
