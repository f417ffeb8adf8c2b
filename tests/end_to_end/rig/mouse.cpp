#include "tests/end_to_end/rig/mouse.h"

#include <X11/extensions/XTest.h>

#include "tests/end_to_end/rig/display_connection.h"

namespace end_to_end {

struct Mouse::Connection {
    DisplayConnection display;
};

Mouse::Mouse(const std::string& display)
    : connection_(std::make_unique<Connection>(Connection{connectToDisplay(display)})) {}

Mouse::~Mouse() = default;

void Mouse::click(Point place) {
    Display* const display = connection_->display.get();
    XTestFakeMotionEvent(display, -1, place.x, place.y, CurrentTime);
    XTestFakeButtonEvent(display, Button1, 1, CurrentTime);
    XTestFakeButtonEvent(display, Button1, 0, CurrentTime);
    XSync(display, 0);
}

}  // namespace end_to_end
