// A connection to an X display. Include it in few source files: Xlib's macros break other headers.
#pragma once

#include <X11/Xlib.h>

#include <memory>
#include <string>

namespace end_to_end {

struct CloseDisplay {
    void operator()(Display* display) const { XCloseDisplay(display); }
};
using DisplayConnection = std::unique_ptr<Display, CloseDisplay>;

// Null if there is no such display. Protocol errors, such as for a window that no longer exists, are ignored; by
// default Xlib ends the process.
DisplayConnection connectToDisplay(const std::string& name);

}  // namespace end_to_end
