#include "tests/end_to_end/surroundings.h"

#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <optional>

namespace end_to_end {

namespace {

// An abstract socket's name belongs to one process until that process ends. Like ports, the names are per network
// namespace.
struct PortLock {
    explicit PortLock(int port) : socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        const std::string name = "hardware-detector-test-port-" + std::to_string(port);
        name.copy(address.sun_path + 1, name.size());
        size = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + name.size());
    }

    [[nodiscard]] bool take() const {
        return bind(socket.number(), generic(), size) == 0 && listen(socket.number(), 64) == 0;
    }

    // The holder accepts no connection, so this one ends when the holder does. False if there is no holder.
    [[nodiscard]] bool waitForHolderToEnd() const {
        if (connect(socket.number(), generic(), size) != 0) return false;
        char byte = 0;
        [[maybe_unused]] const ssize_t end = read(socket.number(), &byte, 1);
        return true;
    }

    [[nodiscard]] const sockaddr* generic() const { return reinterpret_cast<const sockaddr*>(&address); }

    Descriptor socket;
    sockaddr_un address{.sun_family = AF_UNIX, .sun_path = {}};
    socklen_t size = 0;
};

// Another program may use the port.
bool isFree(int port) {
    const Descriptor socket(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
    const int reuse = 1;
    setsockopt(socket.number(), SOL_SOCKET, SO_REUSEADDR, &reuse, sizeof reuse);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<in_port_t>(port));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return bind(socket.number(), reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
}

int takeAnyPort() {
    static std::optional<PortLock> taken;
    while (true) {
        for (int port = FIRST_WEBSITE_PORT; port < FIRST_WEBSITE_PORT + WEBSITE_PORTS; ++port) {
            taken.emplace(port);
            if (taken->take() && isFree(port)) return port;
        }
        taken.reset();
        const int port = FIRST_WEBSITE_PORT + getpid() % WEBSITE_PORTS;
        if (PortLock(port).waitForHolderToEnd()) continue;
        if (isFree(port)) continue;  // The holder ended in between.
        std::fprintf(stderr, "Other programs use port %d and its neighbours.\n", port);
        std::exit(1);
    }
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

Responder website(Script submissionAnswer) {
    return [submissionAnswer = std::move(submissionAnswer)](const RecordedRequest& request) -> Script {
        if (request.target() == "/api/track-install/") return {Send{answerBytes(200, R"({"created": true})")}};
        if (request.target() == "/api/track-usage/") return {Send{answerBytes(200, "noted")}};
        return submissionAnswer;
    };
}

void Surroundings::SetUp() {
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
    environment["PATH"] = opener_.searchPath();
    environment.merge(machine_.environment());
    return {.path = PROGRAM_FOLDER "/hardware-detector-on-" + std::to_string(websitePort()),
            .environment = environment};
}

std::string Surroundings::settingsFile() const {
    return testSupport::textOf(home_.path() / ".config/velmora/hardware-detector.conf");
}

std::vector<std::string> valuesIn(const AccessibleProgram& window) {
    std::vector<std::string> values;
    const std::vector<Element> labels = window.labels();
    static const std::vector<std::string> names = {"OS:", "Processor:", "Graphics Card:", "RAM:", "Storage:"};
    for (std::size_t at = 0; at + 1 < labels.size() && values.size() < names.size(); ++at) {
        if (labels[at].name() == names[values.size()]) values.push_back(labels[++at].name());
    }
    return values;
}

std::size_t peakMemoryOf(const Program& program) {
    std::ifstream status("/proc/" + std::to_string(program.pid()) + "/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with("VmHWM:")) return std::stoul(line.substr(6)) * 1024;
    }
    return 0;
}

std::string valueIn(const std::string& settings, const std::string& key) {
    const std::size_t start = settings.find(key + "=");
    if (start == std::string::npos) return "(absent)";
    const std::size_t from = start + key.size() + 1;
    return settings.substr(from, settings.find('\n', from) - from);
}

}  // namespace end_to_end
