#include "tests/end_to_end/rig/desktop_session.h"

#include <dbus/dbus.h>
#include <fcntl.h>
#include <poll.h>

#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <optional>
#include <stdexcept>

namespace end_to_end {

namespace {

// The descriptor in a service's process on which it reports that it is ready.
constexpr int reportDescriptor = 3;

// Absent if the writer ends, or time runs out, before a whole line has come.
std::optional<std::string> lineFrom(const Descriptor& reader) {
    const auto deadline = std::chrono::steady_clock::now() + patience;
    std::string line;
    while (true) {
        pollfd readable{reader.number(), POLLIN, 0};
        if (poll(&readable, 1, millisecondsUntil(deadline)) == 0) return std::nullopt;
        char byte = 0;
        const ssize_t count = read(reader.number(), &byte, 1);
        if (count < 0 && errno == EINTR) continue;
        if (count != 1) return std::nullopt;
        if (byte == '\n') return line;
        line += byte;
    }
}

// Starts a service and returns the line that it writes when it is ready.
std::string startAndListen(ChildProcess& process, Launch launch) {
    Pipe report;
    launch.descriptors.emplace_back(report.writer.number(), reportDescriptor);
    process.start(launch);
    report.writer.close();
    if (const auto line = lineFrom(report.reader)) return *line;
    throw std::runtime_error(launch.path + " does not get ready");
}

struct CloseConnection {
    void operator()(DBusConnection* connection) const {
        dbus_connection_close(connection);
        dbus_connection_unref(connection);
    }
};
using Connection = std::unique_ptr<DBusConnection, CloseConnection>;

Connection connectTo(const std::string& address) {
    Connection connection(dbus_connection_open_private(address.c_str(), nullptr));
    if (!connection || dbus_bus_register(connection.get(), nullptr) == FALSE) return nullptr;
    return connection;
}

// Subscribes before it asks, so that it does not miss a name taken in between.
bool waitForOwner(DBusConnection* connection, const std::string& name) {
    const std::string rule =
        "type='signal',sender='org.freedesktop.DBus',member='NameOwnerChanged',arg0='" + name + "'";
    dbus_bus_add_match(connection, rule.c_str(), nullptr);
    dbus_connection_flush(connection);
    const auto deadline = std::chrono::steady_clock::now() + patience;
    while (dbus_bus_name_has_owner(connection, name.c_str(), nullptr) == FALSE) {
        const int left = millisecondsUntil(deadline);
        if (left == 0 || dbus_connection_read_write(connection, left) == FALSE) return false;
        while (DBusMessage* message = dbus_connection_pop_message(connection)) dbus_message_unref(message);
    }
    return true;
}

// Programs export their elements while this property is set.
bool enableAccessibility(DBusConnection* connection) {
    struct Unref {
        void operator()(DBusMessage* message) const { dbus_message_unref(message); }
    };
    using Message = std::unique_ptr<DBusMessage, Unref>;
    const Message order(
        dbus_message_new_method_call("org.a11y.Bus", "/org/a11y/bus", DBUS_INTERFACE_PROPERTIES, "Set"));
    const char* const interface = "org.a11y.Status";
    const char* const property = "IsEnabled";
    const dbus_bool_t yes = TRUE;
    DBusMessageIter arguments;
    DBusMessageIter value;
    dbus_message_iter_init_append(order.get(), &arguments);
    dbus_message_iter_append_basic(&arguments, DBUS_TYPE_STRING, &interface);
    dbus_message_iter_append_basic(&arguments, DBUS_TYPE_STRING, &property);
    dbus_message_iter_open_container(&arguments, DBUS_TYPE_VARIANT, DBUS_TYPE_BOOLEAN_AS_STRING, &value);
    dbus_message_iter_append_basic(&value, DBUS_TYPE_BOOLEAN, &yes);
    dbus_message_iter_close_container(&arguments, &value);
    const auto limit = static_cast<int>(std::chrono::milliseconds(patience).count());
    return Message(dbus_connection_send_with_reply_and_block(connection, order.get(), limit, nullptr)) != nullptr;
}

}  // namespace

DesktopSession::DesktopSession() {
    for (const char* const name : {"home", "run"}) {
        std::filesystem::create_directory(folder_.path() / name);
        std::filesystem::permissions(folder_.path() / name, std::filesystem::perms::owner_all);
    }
    const std::filesystem::path log = folder_.path() / "services.log";
    serviceLog_ = Descriptor(open(log.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600));
    try {
        startDisplay();
        startSessionBus();
        startAccessibilityBus();
    } catch (const std::runtime_error& error) {
        throw std::runtime_error(std::string(error.what()) + "\n" + testSupport::textOf(log));
    }
}

DesktopSession::~DesktopSession() {
    accessibilityBus_.end();
    sessionBus_.end();
    displayServer_.end();
}

Environment DesktopSession::environment() const {
    Environment variables{
        {"DISPLAY", display_},
        {"DBUS_SESSION_BUS_ADDRESS", busAddress_},
        {"XDG_RUNTIME_DIR", folder_.path() / "run"},
        {"PATH", "/usr/bin:/bin"},
        {"LC_ALL", "C.UTF-8"},
    };
    for (const char* const name : {"ASAN_OPTIONS", "LSAN_OPTIONS", "TSAN_OPTIONS", "UBSAN_OPTIONS"}) {
        if (const char* const value = std::getenv(name)) variables[name] = value;
    }
    return variables;
}

void DesktopSession::startDisplay() {
    display_ =
        ":" + startAndListen(displayServer_,
                             service("/usr/bin/Xvfb", {"-displayfd", std::to_string(reportDescriptor), "-screen", "0",
                                                       "1000x800x24", "-dpi", "96", "-nolisten", "tcp", "-noreset"}));
    setenv("DISPLAY", display_.c_str(), 1);
}

void DesktopSession::startSessionBus() {
    // No service folders, so that a test never activates a service of the machine's own desktop.
    const std::filesystem::path configuration = folder_.path() / "bus.conf";
    std::ofstream(configuration) << "<!DOCTYPE busconfig PUBLIC '-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN' "
                                    "'http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd'>"
                                    "<busconfig><type>session</type>"
                                    "<listen>unix:path="
                                 << (folder_.path() / "bus").string()
                                 << "</listen>"
                                    "<policy context='default'><allow send_destination='*' eavesdrop='true'/>"
                                    "<allow eavesdrop='true'/><allow own='*'/></policy></busconfig>";
    busAddress_ = startAndListen(
        sessionBus_, service("/usr/bin/dbus-daemon",
                             {"--nofork", "--nopidfile", "--nosyslog", "--config-file=" + configuration.string(),
                              "--print-address=" + std::to_string(reportDescriptor)}));
    setenv("DBUS_SESSION_BUS_ADDRESS", busAddress_.c_str(), 1);
    setenv("XDG_RUNTIME_DIR", (folder_.path() / "run").c_str(), 1);
    unsetenv("AT_SPI_BUS_ADDRESS");
}

void DesktopSession::startAccessibilityBus() {
    // Newer launchers refuse --a11y=1, so a message enables accessibility instead.
    accessibilityBus_.start(service("/usr/libexec/at-spi-bus-launcher", {"--launch-immediately"}));
    const Connection connection = connectTo(busAddress_);
    if (!connection) throw std::runtime_error("no connection to " + busAddress_);
    if (!waitForOwner(connection.get(), "org.a11y.Bus"))
        throw std::runtime_error("the accessibility bus does not get ready");
    if (!enableAccessibility(connection.get())) throw std::runtime_error("accessibility cannot be enabled");
}

Launch DesktopSession::service(std::string path, std::vector<std::string> arguments) const {
    Launch launch;
    launch.path = std::move(path);
    launch.arguments = std::move(arguments);
    launch.environment = environment();
    launch.environment["HOME"] = folder_.path() / "home";
    launch.environment["GSETTINGS_BACKEND"] = "memory";  // Leaves the user's own settings alone.
    launch.descriptors = {{serviceLog_.number(), STDOUT_FILENO}, {serviceLog_.number(), STDERR_FILENO}};
    return launch;
}

}  // namespace end_to_end
