#include "tests/end_to_end/rig/wayland_desktop.h"

#include <fcntl.h>
#include <unistd.h>

#include <QByteArray>
#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLibraryInfo>
#include <cstring>
#include <fstream>
#include <stdexcept>

#include "tests/support/shell.h"

namespace end_to_end {

namespace {

namespace fs = std::filesystem;

constexpr int pixelWidth = 1600;
constexpr int pixelHeight = 1200;

// Older versions of sway refuse to run as root, so root runs it as nobody.
constexpr uid_t nobody = 65534;

// Asks the compositor by swaymsg(1). Null if it does not answer.
QJsonDocument ask(const fs::path& socket, const std::string& question) {
    const std::string answer =
        testSupport::shell("swaymsg --raw --socket " + testSupport::quoted(socket) + " --type " + question).output;
    return QJsonDocument::fromJson(QByteArray::fromStdString(answer));
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

    const QJsonArray outputs = ask(folder_.path() / "sway", "get_outputs").array();
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
    const QJsonObject node = nodeOf(program, ask(folder_.path() / "sway", "get_tree").object());
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
