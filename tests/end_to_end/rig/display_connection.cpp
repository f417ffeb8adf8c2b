#include "tests/end_to_end/rig/display_connection.h"

namespace end_to_end {

DisplayConnection connectToDisplay(const std::string& name) {
    XSetErrorHandler([](Display*, XErrorEvent*) { return 0; });
    return DisplayConnection(XOpenDisplay(name.c_str()));
}

}  // namespace end_to_end
