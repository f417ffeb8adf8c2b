#include "benchmarks/whole_process.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <sstream>
#include <thread>

#include "benchmarks/first_frame.h"
#include "benchmarks/process_figures.h"
#include "tests/end_to_end/rig/desktop_session.h"
#include "tests/end_to_end/rig/keyboard.h"
#include "tests/end_to_end/rig/program.h"
#include "tests/end_to_end/rig/program_window.h"
#include "tests/end_to_end/rig/scripted_machine.h"
#include "tests/support/scripted_server.h"

namespace benchmarks {

namespace {

using end_to_end::DesktopSession;
using end_to_end::Keyboard;
using end_to_end::Program;
using end_to_end::ProgramWindow;
using testSupport::answerBytes;
using testSupport::Script;
using testSupport::ScriptedServer;
using testSupport::Send;

using Clock = std::chrono::steady_clock;

constexpr double millisecond = 1'000'000;
constexpr const char* refusal = R"({"success": false, "error": "no"})";
constexpr const char* lastLineOfARefusal =
    "❌ Failed to send hardware data. Check the console output above for details.";

double millisecondsSince(Clock::time_point start) {
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

[[noreturn]] void giveUp(const char* what) {
    std::fprintf(stderr, "The benchmark cannot go on: %s.\n", what);
    std::exit(2);
}

void require(bool condition, const char* what) {
    if (!condition) giveUp(what);
}

class Bench {
  public:
    Bench(int rounds, std::string homeWithFonts)
        : rounds_(rounds),
          homeWithFonts_(std::move(homeWithFonts)),
          server_([](const testSupport::RecordedRequest&) -> Script { return {Send{answerBytes(200, refusal)}}; },
                  WEBSITE_PORT) {
        environment_ = session_.environment();
        environment_["HOME"] = home_.path();
        // Like a desktop without a screen reader.
        environment_["DBUS_SESSION_BUS_ADDRESS"] = "disabled:";
        environment_.erase("QT_LINUX_ACCESSIBILITY_ALWAYS_ON");
    }

    std::vector<Figure> figures() {
        measureStart("", home_.path());
        measureStart(", many fonts", homeWithFonts_);
        measureDetectionAndSubmission();
        measureQuit();
        measureAnswers();
        measureIdleness();
        measureSize();
        measureOthers();
        return std::move(figures_);
    }

  private:
    [[nodiscard]] Program::Setting settingOf(const char* path) const {
        return {.path = path, .environment = environment_};
    }

    static void waitForReports(Program& program) {
        require(
            program.waitForLine([](std::string_view line) { return line.find("Response: ") != line.npos; }).has_value(),
            "the website was not asked");
    }

    // Gives the window the focus, on its first element.
    ProgramWindow windowReadyForKeys(Program& program) {
        const auto window = ProgramWindow::waitFor(session_.display(), program.pid());
        require(window.has_value(), "no window came");
        waitForReports(program);
        window->focus();
        return *window;
    }

    struct Start {
        double time;
        double memory;
    };

    Start startOf(const char* path) { return startOf(settingOf(path)); }

    Start startOf(const Program::Setting& setting) {
        const WatchedPlace middle(session_.display(), 300, 480);
        const unsigned long before = middle.colour();
        const auto start = Clock::now();
        Program program(setting);
        require(middle.waitForOtherThan(before), "no window came");
        const double time = millisecondsSince(start);
        program.signal(SIGSTOP);
        return {time, peakMemoryOf(program.pid())};
    }

    // Compared with an empty window, and with a line of text, for which the toolkit lists all fonts.
    void measureStart(const std::string& suffix, const std::string& home) {
        Figure time{"exec to first painted frame" + suffix, "ms", {}, {}, {.ratio = 1.20}};
        Figure timeOfText{"the same beside a line of text" + suffix, "ms", {}, {}, {.ratio = 1.10}};
        Figure memory{"peak memory at that moment" + suffix, "MB", {}, {}, {.ratio = 1.25}};
        for (int round = -2; round < rounds_; ++round) {
            const auto startAtHome = [&](const char* path) {
                Program::Setting setting = settingOf(path);
                setting.environment["HOME"] = home;
                return startOf(setting);
            };
            const Start own = startAtHome(PROGRAM_PATH);
            const Start floor = startAtHome(EMPTY_WINDOW_PATH);
            const Start text = startAtHome(WINDOW_WITH_TEXT_PATH);
            if (round < 0) continue;  // warm-up
            time.program.values.push_back(own.time);
            time.floor.values.push_back(floor.time);
            timeOfText.program.values.push_back(own.time);
            timeOfText.floor.values.push_back(text.time);
            memory.program.values.push_back(own.memory);
            memory.floor.values.push_back(floor.memory);
        }
        if (floorMemory_.values.empty()) floorMemory_ = memory.floor;
        figures_.insert(figures_.end(), {time, timeOfText, memory});
    }

    // By the keyboard: the field has the focus at first, then the button, the list and the other button.
    void measureDetectionAndSubmission() {
        Figure press{"press of Detect to the banner painted", "ms", {}, {}, {.more = 8}};
        Figure memory{"peak memory after a detection and a submission", "MB", {}, floorMemory_, {.ratio = 1.5}};
        for (int round = -2; round < rounds_; ++round) {
            Program program(settingOf(PROGRAM_PATH));
            windowReadyForKeys(program);
            Keyboard keyboard(session_.display());
            keyboard.press("Tab");
            const WatchedPlace banner(session_.display(), 24, 130);
            const unsigned long before = banner.colour();
            const auto start = Clock::now();
            keyboard.press("space");
            require(banner.waitForOtherThan(before), "no banner came");
            const double own = millisecondsSince(start);

            Program commands(settingOf(BARE_COMMANDS_PATH));
            require(commands.waitForExit().has_value(), "the commands did not end");
            keyboard.press("Tab");
            keyboard.press("Tab");
            keyboard.press("space");
            require(program.waitForLine(lastLineOfARefusal), "nothing was sent");
            if (round < 0) continue;
            press.program.values.push_back(own);
            press.floor.values.push_back(std::stod(commands.bytes(end_to_end::Stream::output)));
            memory.program.values.push_back(peakMemoryOf(program.pid()));
        }
        figures_.push_back(memory);
        figures_.push_back(press);
    }

    void measureQuit() {
        Figure quit{"quit while a command and a request hang", "ms", {}, {}, {.absolute = 50}};
        for (int round = 0; round < rounds_; ++round) {
            end_to_end::ScriptedMachine machine;
            machine.script("/usr/sbin/sysctl", "true");
            machine.hold("/usr/sbin/sysctl");
            Program::Setting setting = settingOf(PROGRAM_PATH);
            setting.environment.merge(machine.environment());
            Program program(setting);
            const ProgramWindow window = windowReadyForKeys(program);
            Keyboard keyboard(session_.display());
            keyboard.press("Tab");
            keyboard.press("space");
            require(machine.waitForRuns(1), "no command ran");
            const auto start = Clock::now();
            window.askToClose();
            require(program.waitForExit().has_value(), "it did not end");
            quit.program.values.push_back(millisecondsSince(start));
        }
        figures_.push_back(quit);
    }

    void measureAnswers() {
        for (const std::size_t size : {1U, 8U, 64U}) {
            const std::string name = "answer of " + std::to_string(size) + " MiB";
            const std::string body = std::string(size << 20U, 'x');
            Figure time{name, "ms", {}, {}, {}};
            Figure memory{name + ", peak memory added", "MiB", {}, {}, {.absolute = 3.0 * static_cast<double>(size)}};
            for (int round = -1; round < 5; ++round) {
                const ScriptedServer server(
                    testSupport::inTurn({{Send{answerBytes(200, refusal)}}, {Send{answerBytes(200, body)}}}));
                Program::Setting setting = settingOf(SEND_ONCE_PATH);
                setting.arguments = {server.url("")};
                Program program(setting);
                require(program.waitForExit().has_value(), "the answer was not taken");
                double took = 0;
                double before = 0;
                double after = 0;
                std::istringstream(program.bytes(end_to_end::Stream::error)) >> took >> before >> after;
                if (round < 0) continue;
                time.program.values.push_back(took);
                memory.program.values.push_back(after - before);
            }
            figures_.push_back(time);
            figures_.push_back(memory);
        }
    }

    void measureIdleness() {
        constexpr std::chrono::seconds settling{15};  // Longer than the background work of a start.
        constexpr std::chrono::seconds idle{60};
        Program program(settingOf(PROGRAM_PATH));
        Program floor(settingOf(EMPTY_WINDOW_PATH));
        waitForReports(program);
        std::this_thread::sleep_for(settling);
        const Activity before = activityOf(program.pid());
        const Activity floorBefore = activityOf(floor.pid());
        std::this_thread::sleep_for(idle);
        const Activity after = activityOf(program.pid());
        const Activity floorAfter = activityOf(floor.pid());
        figures_.push_back({"60 idle seconds, processor time",
                            "ms",
                            {{after.processorTime - before.processorTime}},
                            {{floorAfter.processorTime - floorBefore.processorTime}},
                            {.absolute = 100}});  // The caret blinks.
        figures_.push_back({"60 idle seconds, wake-ups",
                            "",
                            {{after.wakeUps - before.wakeUps}},
                            {{floorAfter.wakeUps - floorBefore.wakeUps}},
                            {.absolute = 500}});
    }

    void measureSize() {
        const auto size = static_cast<double>(std::filesystem::file_size(STRIPPED_PROGRAM_PATH)) / 1024;
        figures_.push_back({"stripped program file", "KiB", {{size}}, {}, {.absolute = 700}});
    }

    // Other programs that show a computer's hardware, if installed, for comparison without targets.
    void measureOthers() {
        for (const std::string name : {"fastfetch", "lshw"}) {
            const std::string path = "/usr/bin/" + name;
            if (!std::filesystem::exists(path)) continue;
            Figure run{name + ", the whole run", "ms", {}, {}, {}};
            for (int round = 0; round < rounds_; ++round) {
                const auto start = Clock::now();
                Program program(settingOf(path.c_str()));
                require(program.waitForExit().has_value(), "another program did not end");
                run.program.values.push_back(millisecondsSince(start));
            }
            figures_.push_back(run);
        }
        for (const std::string name : {"lshw-gtk", "hardinfo", "cpu-x"}) {
            const std::string path = "/usr/bin/" + name;
            if (!std::filesystem::exists(path)) continue;
            Figure time{name + ", exec to first window", "ms", {}, {}, {}};
            Figure memory{name + ", peak memory at that moment", "MB", {}, {}, {}};
            for (int round = 0; round < rounds_; ++round) {
                const Start start = startOf(path.c_str());
                time.program.values.push_back(start.time);
                memory.program.values.push_back(start.memory);
            }
            figures_.push_back(time);
            figures_.push_back(memory);
        }
    }

    int rounds_;
    std::string homeWithFonts_;
    DesktopSession session_;
    testSupport::TemporaryFolder home_;
    end_to_end::Environment environment_;
    ScriptedServer server_;
    Samples floorMemory_;
    std::vector<Figure> figures_;
};

}  // namespace

std::vector<Figure> wholeProcessFigures(int rounds, const std::string& homeWithFonts) {
    return Bench(rounds, homeWithFonts).figures();
}

}  // namespace benchmarks
