// A connection to an X display, whose library's names do not go well with others' and stay in a few source files.
#pragma once

#include <X11/Xlib.h>

#include <memory>
#include <string>

namespace end_to_end {

struct CloseDisplay {
    void operator()(Display* display) const { XCloseDisplay(display); }
};
using DisplayConnection = std::unique_ptr<Display, CloseDisplay>;

// Requests about a window that has just gone are ignored instead of ending the process. Null when there is no such
// display.
DisplayConnection connectToDisplay(const std::string& name);

}  // namespace end_to_end
