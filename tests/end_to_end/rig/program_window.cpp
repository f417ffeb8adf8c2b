#include "tests/end_to_end/rig/program_window.h"

#include <X11/Xatom.h>
#include <poll.h>

#include <vector>

#include "tests/end_to_end/rig/display_connection.h"
#include "tests/end_to_end/rig/patience.h"

namespace end_to_end {

namespace {

struct FreeX {
    void operator()(void* data) const { XFree(data); }
};

std::vector<Window> topLevelWindows(Display* display) {
    Window root = 0;
    Window parent = 0;
    Window* children = nullptr;
    unsigned count = 0;
    if (XQueryTree(display, DefaultRootWindow(display), &root, &parent, &children, &count) == 0) return {};
    const std::unique_ptr<Window, FreeX> owner(children);
    return children == nullptr ? std::vector<Window>() : std::vector<Window>(children, children + count);
}

bool belongsTo(Display* display, Window window, pid_t program) {
    const Atom property = XInternAtom(display, "_NET_WM_PID", 0);
    Atom type = 0;
    int format = 0;
    unsigned long count = 0;
    unsigned long left = 0;
    unsigned char* data = nullptr;
    XGetWindowProperty(display, window, property, 0, 1, 0, XA_CARDINAL, &type, &format, &count, &left, &data);
    const std::unique_ptr<unsigned char, FreeX> owner(data);
    // Items of 32 bits come as an array of long.
    return count == 1 && format == 32 && *static_cast<long*>(static_cast<void*>(data)) == program;
}

bool isShown(Display* display, Window window) {
    XWindowAttributes attributes{};
    return XGetWindowAttributes(display, window, &attributes) != 0 && attributes.map_state == IsViewable &&
           attributes.c_class == InputOutput;
}

// Waits for any window event on the display; false after the deadline.
bool waitForChange(Display* display, std::chrono::steady_clock::time_point deadline) {
    while (XPending(display) == 0) {
        const int left = millisecondsUntil(deadline);
        if (left == 0) return false;
        pollfd event{ConnectionNumber(display), POLLIN, 0};
        poll(&event, 1, left);
    }
    XEvent event;
    while (XPending(display) > 0) XNextEvent(display, &event);
    return true;
}

}  // namespace

std::optional<ProgramWindow> ProgramWindow::waitFor(const std::string& display, pid_t program) {
    const DisplayConnection connection = connectToDisplay(display);
    if (!connection) return std::nullopt;
    XSelectInput(connection.get(), DefaultRootWindow(connection.get()), SubstructureNotifyMask);
    const auto deadline = std::chrono::steady_clock::now() + patience;
    do {
        for (const Window window : topLevelWindows(connection.get())) {
            if (!isShown(connection.get(), window) || !belongsTo(connection.get(), window, program)) continue;
            ProgramWindow found;
            found.display_ = display;
            found.window_ = window;
            return found;
        }
    } while (waitForChange(connection.get(), deadline));
    return std::nullopt;
}

void ProgramWindow::focus() const {
    const DisplayConnection connection = connectToDisplay(display_);
    XSetInputFocus(connection.get(), window_, RevertToParent, CurrentTime);
    XSync(connection.get(), 0);
}

void ProgramWindow::askToClose() const {
    const DisplayConnection connection = connectToDisplay(display_);
    XEvent event{};
    event.xclient.type = ClientMessage;
    event.xclient.window = window_;
    event.xclient.message_type = XInternAtom(connection.get(), "WM_PROTOCOLS", 0);
    event.xclient.format = 32;
    event.xclient.data.l[0] = static_cast<long>(XInternAtom(connection.get(), "WM_DELETE_WINDOW", 0));
    event.xclient.data.l[1] = CurrentTime;
    XSendEvent(connection.get(), window_, 0, NoEventMask, &event);
    XSync(connection.get(), 0);
}

}  // namespace end_to_end
