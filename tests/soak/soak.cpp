// Runs many rounds in one process and prints which resources they leave behind. Ends with 1 if any of them grows.
#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "tests/end_to_end/rig/accessibility.h"
#include "tests/end_to_end/rig/desktop_session.h"
#include "tests/end_to_end/rig/program.h"
#include "tests/end_to_end/rig/scripted_opener.h"
#include "tests/support/scripted_server.h"

namespace {

using end_to_end::AccessibleProgram;
using end_to_end::Program;
using testSupport::answerBytes;
using testSupport::Send;

constexpr int rounds = 1'000;
constexpr int warmUp = 200;            // Rounds until caches are full.
constexpr long memoryAllowance = 512;  // In kilobytes: memory that allocators keep varies by as much.

void require(bool condition, const char* what) {
    if (condition) return;
    std::fprintf(stderr, "The soak fails: %s.\n", what);
    std::exit(2);
}

struct Resources {
    long memory = 0;  // Anonymous memory in kilobytes.
    long descriptors = 0;
    long threads = 0;
    long children = 0;  // Including zombies.
    long files = 0;     // In the home and the folder for temporary files.
};

long filesIn(const std::filesystem::path& folder) {
    std::error_code ignored;
    const std::filesystem::recursive_directory_iterator all(
        folder, std::filesystem::directory_options::skip_permission_denied, ignored);
    return std::distance(begin(all), end(all));
}

Resources resourcesOf(pid_t process, const std::filesystem::path& home) {
    const std::filesystem::path place = "/proc/" + std::to_string(process);
    Resources found;
    std::ifstream status(place / "status");
    for (std::string line; std::getline(status, line);) {
        if (line.rfind("RssAnon:", 0) == 0) found.memory = std::strtol(line.c_str() + 8, nullptr, 10);
        if (line.rfind("Threads:", 0) == 0) found.threads = std::strtol(line.c_str() + 8, nullptr, 10);
    }
    for ([[maybe_unused]] const auto& each : std::filesystem::directory_iterator(place / "fd")) ++found.descriptors;
    for (const auto& thread : std::filesystem::directory_iterator(place / "task")) {
        std::ifstream children(thread.path() / "children");
        for (pid_t child = 0; children >> child;) ++found.children;
    }
    found.files = filesIn(home) + filesIn("/tmp");
    return found;
}

bool report(const char* what, const Resources& early, const Resources& late) {
    std::printf("%s, after %d and %d rounds\n", what, warmUp, rounds);
    bool isSteady = true;
    const auto row = [&isSteady](const char* name, long before, long after, long allowance) {
        const bool grows = after > before + allowance;
        std::printf("  %-28s %8ld %8ld  %s\n", name, before, after, grows ? "GROWS" : "");
        isSteady = isSteady && !grows;
    };
    row("memory, kB", early.memory, late.memory, memoryAllowance);
    row("descriptors", early.descriptors, late.descriptors, 0);
    row("threads", early.threads, late.threads, 0);
    row("children", early.children, late.children, 0);
    row("files", early.files, late.files, 0);
    std::fflush(stdout);
    return isSteady;
}

// Waits, since threads and connections of the last round end a little after the banner appears.
Resources settledResourcesOf(pid_t process, const std::filesystem::path& home, const Resources& aim) {
    Resources found = resourcesOf(process, home);
    (void)end_to_end::waitFor([&] {
        found = resourcesOf(process, home);
        return found.threads <= aim.threads && found.descriptors <= aim.descriptors && found.children <= aim.children;
    });
    return found;
}

class Soak {
  public:
    Soak() {
        environment_ = session_.environment();
        environment_["HOME"] = home_.path();
        environment_["PATH"] = opener_.searchPath();
    }

    bool detectAndSend() {
        std::atomic<bool> accepts = false;
        const testSupport::ScriptedServer server(
            [&accepts](const testSupport::RecordedRequest&) -> testSupport::Script {
                const char* verdict = accepts ? R"({"success": true})" : R"({"success": false, "error": "no"})";
                return {Send{answerBytes(200, verdict)}};
            },
            WEBSITE_PORT);
        Program program({.path = PROGRAM_PATH, .environment = environment_});
        const AccessibleProgram window(program.pid());
        Resources early;
        for (int round = 1; round <= rounds; ++round) {
            require(press(window, "Detect Hardware"), "nothing can be detected");
            require(press(window, "Send to Website"), "nothing can be sent");
            const auto requests = static_cast<std::size_t>(2 + round);
            require(server.waitForRequests(requests), "nothing was sent");
            if (round == warmUp) early = restingResourcesOf(program, window);
        }
        (void)restingResourcesOf(program, window);
        const Resources late = settledResourcesOf(program.pid(), home_.path(), early);
        accepts = true;
        require(press(window, "Send to Website"), "nothing can be sent at last");
        require(program.waitForExit() == end_to_end::success, "it does not end with status 0 after a success");
        return report("detect and send", early, late);
    }

    bool appearAndHide() {
        const testSupport::ScriptedServer server(testSupport::always({Send{answerBytes(200, "{}")}}), WEBSITE_PORT);
        Program program(
            {.path = APPEAR_AND_HIDE_PATH, .environment = environment_, .arguments = {std::to_string(rounds)}});
        Resources early;
        for (const int round : {warmUp, rounds}) {
            while (server.requests().size() < 2U * static_cast<unsigned>(round)) {
                require(server.waitForRequests(server.requests().size() + 1), "the window does not appear");
            }
            if (round == warmUp) early = resourcesOf(program.pid(), home_.path());
        }
        return report("appear and hide", early, settledResourcesOf(program.pid(), home_.path(), early));
    }

  private:
    Resources restingResourcesOf(const Program& program, const AccessibleProgram& window) {
        require(end_to_end::waitFor([&] {
                    const auto send = window.button("Send to Website");
                    const auto detect = window.button("Detect Hardware");
                    return send && detect && send->enabled() && detect->enabled();
                }),
                "it stays busy");
        return resourcesOf(program.pid(), home_.path());
    }

    end_to_end::DesktopSession session_;
    testSupport::TemporaryFolder home_;
    end_to_end::ScriptedOpener opener_;
    end_to_end::Environment environment_;
};

}  // namespace

int main() {
    Soak soak;
    const bool first = soak.detectAndSend();
    const bool second = soak.appearAndHide();
    return first && second ? 0 : 1;
}
