#include "tests/end_to_end/rig/window_manager.h"

#include <poll.h>

#include "tests/end_to_end/rig/patience.h"

namespace end_to_end {

WindowManager::WindowManager(const std::string& display) : connection_(connectToDisplay(display)) {
    XSelectInput(connection_.get(), DefaultRootWindow(connection_.get()), SubstructureRedirectMask);
    XSync(connection_.get(), 0);
}

bool WindowManager::waitForWindow() {
    Display* const display = connection_.get();
    const auto deadline = std::chrono::steady_clock::now() + patience;
    while (window_ == 0) {
        if (XPending(display) == 0) {
            const int left = millisecondsUntil(deadline);
            if (left == 0) return false;
            pollfd event{ConnectionNumber(display), POLLIN, 0};
            poll(&event, 1, left);
            continue;
        }
        XEvent event;
        XNextEvent(display, &event);
        if (event.type == MapRequest) window_ = event.xmaprequest.window;
    }
    return true;
}

void WindowManager::showWindow() {
    XMapWindow(connection_.get(), window_);
    XSync(connection_.get(), 0);
}

}  // namespace end_to_end
