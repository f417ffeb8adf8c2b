#include "tests/end_to_end/rig/wayland_desktop.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/un.h>

#include <QByteArray>
#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLibraryInfo>
#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <stdexcept>

namespace end_to_end {

namespace {

namespace fs = std::filesystem;

constexpr int pixelWidth = 1600;
constexpr int pixelHeight = 1200;

// Older versions of sway refuse to run as root, so root runs it as nobody.
constexpr uid_t nobody = 65534;

// Kinds of sway's IPC messages.
enum class Question : std::uint32_t { outputs = 3, tree = 4 };

bool sendAll(const Descriptor& socket, const QByteArray& bytes) {
    return send(socket.number(), bytes.data(), static_cast<std::size_t>(bytes.size()), MSG_NOSIGNAL) == bytes.size();
}

QByteArray receive(const Descriptor& socket, std::size_t count) {
    QByteArray bytes(static_cast<qsizetype>(count), '\0');
    const ssize_t received = recv(socket.number(), bytes.data(), count, MSG_WAITALL);
    return received == static_cast<ssize_t>(count) ? bytes : QByteArray();
}

// Asks over the compositor's socket. A header is a magic word, the payload's length and the kind. Null if no answer
// comes.
QJsonDocument ask(const fs::path& socketPath, Question question) {
    const Descriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    const timeval limit{patience.count(), 0};
    setsockopt(socket.number(), SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, socketPath.c_str(), sizeof address.sun_path - 1);
    const auto* const general = static_cast<const sockaddr*>(static_cast<const void*>(&address));
    if (connect(socket.number(), general, sizeof address) != 0) return {};

    constexpr std::array magic{'i', '3', '-', 'i', 'p', 'c'};
    std::array<std::uint32_t, 2> lengthAndKind{0, static_cast<std::uint32_t>(question)};
    QByteArray header(magic.data(), magic.size());
    header.append(static_cast<const char*>(static_cast<const void*>(lengthAndKind.data())), sizeof lengthAndKind);
    if (!sendAll(socket, header)) return {};

    header = receive(socket, magic.size() + sizeof lengthAndKind);
    if (header.isEmpty()) return {};
    std::memcpy(lengthAndKind.data(), header.data() + magic.size(), sizeof lengthAndKind);
    return QJsonDocument::fromJson(receive(socket, lengthAndKind[0]));
}

// Depth first.
QJsonObject nodeOf(pid_t program, const QJsonObject& node) {
    if (node["pid"].toInt() == program) return node;
    for (const char* const list : {"nodes", "floating_nodes"}) {
        for (const QJsonValue& child : node[QLatin1String(list)].toArray()) {
            const QJsonObject found = nodeOf(program, child.toObject());
            if (!found.isEmpty()) return found;
        }
    }
    return {};
}

}  // namespace

std::optional<std::string> WaylandDesktop::whyUnavailable() {
    const auto missing = [](const std::string& package) { return "the package " + package + " is not installed"; };
    for (const char* const program : {"sway", "grim"}) {
        if (!fs::exists(fs::path("/usr/bin") / program)) return missing(program);
    }
    const QDir platforms(QLibraryInfo::path(QLibraryInfo::PluginsPath) + "/platforms");
    if (platforms.entryList({"libqwayland*.so"}).isEmpty()) return missing("qt6-wayland");
    const testSupport::TemporaryFolder folder;
    if (geteuid() == 0 && chown(folder.path().c_str(), nobody, nobody) != 0) {
        return "needs CAP_CHOWN and CAP_SETUID, and a user nobody, to run sway, which refuses to run as root";
    }
    return std::nullopt;
}

WaylandDesktop::WaylandDesktop(double scale) : ready_(folder_.path() / "ready") {
    try {
        start(scale);
    } catch (const std::runtime_error& error) {
        throw std::runtime_error(std::string(error.what()) + "\n" + testSupport::textOf(folder_.path() / "log"));
    }
}

void WaylandDesktop::start(double scale) {
    const fs::path configuration = folder_.path() / "config";
    std::ofstream(configuration) << "output * resolution " << pixelWidth << "x" << pixelHeight << " scale " << scale
                                 << "\nxwayland disable\n"
                                 << "exec echo \"$WAYLAND_DISPLAY\" > '" << ready_.path().string() << "'\n";
    const Descriptor log(open((folder_.path() / "log").c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600));

    Launch launch;
    launch.path = "/usr/bin/sway";
    launch.arguments = {"--config", configuration};
    launch.environment = {{"HOME", folder_.path()},
                          {"PATH", "/usr/bin:/bin"},
                          {"XDG_RUNTIME_DIR", folder_.path()},
                          {"SWAYSOCK", folder_.path() / "sway"},
                          {"WLR_BACKENDS", "headless"},
                          {"WLR_RENDERER", "pixman"},
                          {"WLR_LIBINPUT_NO_DEVICES", "1"}};
    launch.descriptors = {{log.number(), STDOUT_FILENO}, {log.number(), STDERR_FILENO}};
    if (geteuid() == 0) {
        for (const fs::path& path : {folder_.path(), ready_.path()}) {
            if (chown(path.c_str(), nobody, nobody) != 0)
                throw std::runtime_error("chown " + path.string() + ": " + std::strerror(errno));
        }
        const std::string number = std::to_string(nobody);
        launch.arguments.insert(launch.arguments.begin(), {"--reuid=" + number, "--regid=" + number, "--clear-groups",
                                                           "--pdeathsig=KILL", launch.path});
        launch.path = "/usr/bin/setpriv";
    }
    compositor_.start(launch);

    if (!ready_.waitUntil([](const std::string& bytes) { return bytes.ends_with('\n'); }))
        throw std::runtime_error("sway does not get ready");
    const std::string name = ready_.bytes().substr(0, ready_.bytes().size() - 1);
    display_ = folder_.path() / name;

    const QJsonArray outputs = ask(folder_.path() / "sway", Question::outputs).array();
    if (outputs.size() != 1) throw std::runtime_error("sway does not have exactly one screen");
    const QJsonObject area = outputs[0].toObject()["rect"].toObject();
    width_ = area["width"].toInt();
    height_ = area["height"].toInt();
}

Environment WaylandDesktop::environmentFrom(Environment session) const {
    session.erase("DISPLAY");
    session["WAYLAND_DISPLAY"] = display_;
    return session;
}

std::optional<WaylandDesktop::Window> WaylandDesktop::windowOf(pid_t program) const {
    const QJsonObject node = nodeOf(program, ask(folder_.path() / "sway", Question::tree).object());
    if (node.isEmpty()) return std::nullopt;
    const QJsonObject area = node["rect"].toObject();
    return Window{.x = area["x"].toInt(),
                  .y = area["y"].toInt(),
                  .width = area["width"].toInt(),
                  .height = area["height"].toInt(),
                  .hasTitleBar = node["border"].toString() == "normal",
                  .applicationId = node["app_id"].toString().toStdString()};
}

bool WaylandDesktop::saveScreenshot(const std::string& file) const {
    ChildProcess camera;
    Launch launch;
    launch.path = "/usr/bin/grim";
    launch.arguments = {file};
    launch.environment = {{"WAYLAND_DISPLAY", display_}, {"XDG_RUNTIME_DIR", folder_.path()}};
    camera.start(launch);
    return camera.waitForExit() == success;
}

}  // namespace end_to_end
