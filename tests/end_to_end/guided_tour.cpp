// Does the main job with the program on a virtual display and saves a picture of each state:
//   guided-tour PROGRAM COMMANDS PICTURES [SCALE]
// COMMANDS is a folder for startingCommandsIn(). With SCALE it uses a Wayland desktop of that scale, otherwise an X
// display. Prints the program's log. Exits with 0 if every step succeeds.
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <stdexcept>
#include <string>

#include "tests/end_to_end/rig/accessibility.h"
#include "tests/end_to_end/rig/desktop_session.h"
#include "tests/end_to_end/rig/program.h"
#include "tests/end_to_end/rig/screenshot.h"
#include "tests/end_to_end/rig/scripted_machine.h"
#include "tests/end_to_end/rig/scripted_opener.h"
#include "tests/end_to_end/rig/wayland_desktop.h"
#include "tests/support/files.h"

namespace end_to_end {
namespace {

// There is no browser; the log names the page.
int tour(const std::string& programPath, const std::string& commands, const std::string& folder,
         std::optional<double> scale) {
    const DesktopSession session;
    std::optional<WaylandDesktop> wayland;
    if (scale) wayland.emplace(*scale);
    const testSupport::TemporaryFolder home;
    const ScriptedOpener opener;
    Environment environment = wayland ? wayland->environmentFrom(session.environment()) : session.environment();
    environment["HOME"] = home.path();
    environment["PATH"] = opener.searchPath();
    environment.merge(startingCommandsIn(commands));
    Program program({.path = programPath, .environment = environment});
    const AccessibleProgram window(program.pid());

    bool went = true;
    const auto picture = [&](const std::string& name) {
        const std::string file = folder + "/" + name + ".png";
        went = went && (wayland ? wayland->saveScreenshot(file) : saveScreenshot(session.display(), file));
        std::fprintf(stderr, "    %s\n", file.c_str());
    };
    const auto pressAndSee = [&](const std::string& name, const std::string& text) {
        std::fprintf(stderr, "==> Pressing \"%s\"\n", name.c_str());
        went = went && press(window, name) && shows(window, text);
    };

    went = went && waitFor([&] { return window.button("Detect Hardware").has_value(); });
    if (wayland) went = went && waitFor([&] { return wayland->windowOf(program.pid()).has_value(); });
    picture("1-launch");
    pressAndSee("Detect Hardware", "Hardware detected successfully!");
    picture("2-detected");
    pressAndSee("Send to Website", "Hardware data sent successfully! Opening website...");
    picture("3-sent");
    const auto exit = program.waitForExit();
    went = went && exit == success;

    for (const std::string& line : program.log()) std::printf("%s\n", line.c_str());
    if (!went) std::fprintf(stderr, "A step failed. The window at the end:\n%s\n", window.tree().c_str());
    return went ? 0 : 1;
}

}  // namespace
}  // namespace end_to_end

int main(int argc, char** argv) {
    if (argc != 4 && argc != 5) {
        std::fprintf(stderr, "usage: guided-tour PROGRAM COMMANDS PICTURES [SCALE]\n");
        return 2;
    }
    const std::optional<double> scale = argc == 5 ? std::optional(std::atof(argv[4])) : std::nullopt;
    try {
        return end_to_end::tour(argv[1], argv[2], argv[3], scale);
    } catch (const std::runtime_error& error) {
        std::fprintf(stderr, "The tour did not start: %s\n", error.what());
        return 1;
    }
}
