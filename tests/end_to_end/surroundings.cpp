#include "tests/end_to_end/surroundings.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <fstream>
#include <sstream>
#include <stdexcept>

namespace end_to_end {

using testSupport::answerBytes;
using testSupport::RecordedRequest;
using testSupport::Script;
using testSupport::Send;

namespace {

// False when another process has the port, if it does not wait for that one's end.
bool takePort(int port, bool wait) {
    const std::string name = "hardware-detector-test-port-" + std::to_string(port);
    const std::string file = std::filesystem::temp_directory_path() / name;
    int lock = open(file.c_str(), O_RDONLY | O_CLOEXEC);
    if (lock < 0) lock = open(file.c_str(), O_RDONLY | O_CREAT | O_CLOEXEC, 0644);
    if (lock < 0) throw std::runtime_error("cannot make " + file);
    if (flock(lock, wait ? LOCK_EX : LOCK_EX | LOCK_NB) == 0) return true;  // Locked until this process ends.
    close(lock);
    return false;
}

int takeAnyPort() {
    for (int port = FIRST_WEBSITE_PORT; port < FIRST_WEBSITE_PORT + WEBSITE_PORTS; ++port) {
        if (takePort(port, false)) return port;
    }
    const int port = FIRST_WEBSITE_PORT + getpid() % WEBSITE_PORTS;
    takePort(port, true);
    return port;
}

}  // namespace

int websitePort() {
    static const int port = takeAnyPort();
    return port;
}

DesktopSession& session() {
    static DesktopSession theSession;
    return theSession;
}

std::string base() { return "http://127.0.0.1:" + std::to_string(websitePort()); }

testSupport::Responder website(Script submissionAnswer) {
    return [submissionAnswer = std::move(submissionAnswer)](const RecordedRequest& request) -> Script {
        if (request.target() == "/api/track-install/") return {Send{answerBytes(200, R"({"created": true})")}};
        if (request.target() == "/api/track-usage/") return {Send{answerBytes(200, "noted")}};
        return submissionAnswer;
    };
}

void Surroundings::SetUp() {
    ASSERT_EQ(session().failure(), std::nullopt);
    machine_.script(sysctl, R"(case "$2" in
        machdep.cpu.brand_string) echo 'Apple M1 Pro' ;;
        hw.memsize) echo 17179869184 ;;
    esac)");
    machine_.script(systemProfiler, R"(case "$1" in
        SPHardwareDataType) printf 'Hardware:\n\n    Hardware Overview:\n\n      Chip: Apple M1 Pro Max\n' ;;
        SPDisplaysDataType) printf '    Apple M1:\n\n      Chipset Model: Apple M1 GPU\n' ;;
    esac)");
    machine_.script(df, R"(printf 'Filesystem Size Used\n/dev/disk3s1s1 494G 9G\n')");
}

Program::Setting Surroundings::setting() {
    Environment environment = session().environment();
    environment["HOME"] = home_.path();
    environment["LC_ALL"] = "C.UTF-8";
    environment["PATH"] = opener_.searchPath();
    environment.merge(machine_.environment());
    return {.path = PROGRAM_FOLDER "/hardware-detector-on-" + std::to_string(websitePort()),
            .environment = environment};
}

std::string Surroundings::settingsFile() const {
    std::ifstream file(home_.path() / ".config/velmora/hardware-detector.conf");
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

bool press(const AccessibleProgram& window, const std::string& name) {
    return waitFor([&] {
        const auto button = window.button(name);
        return button && button->enabled() && button->press();
    });
}

bool shows(const AccessibleProgram& window, const std::string& text) {
    return waitFor([&] { return window.label(text).has_value(); });
}

std::string valueIn(const std::string& settings, const std::string& key) {
    const std::size_t start = settings.find(key + "=");
    if (start == std::string::npos) return "(absent)";
    const std::size_t from = start + key.size() + 1;
    return settings.substr(from, settings.find('\n', from) - from);
}

}  // namespace end_to_end
