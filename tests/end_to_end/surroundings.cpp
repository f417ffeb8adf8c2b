#include "tests/end_to_end/surroundings.h"

#include <fstream>
#include <sstream>

namespace end_to_end {

using testSupport::answerBytes;
using testSupport::RecordedRequest;
using testSupport::Script;
using testSupport::Send;

const int websitePort = WEBSITE_PORT;

DesktopSession& session() {
    static DesktopSession theSession;
    return theSession;
}

std::string base() { return "http://127.0.0.1:" + std::to_string(websitePort); }

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
    return {.path = PROGRAM_PATH, .environment = environment, .mounts = machine_.mounts()};
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
