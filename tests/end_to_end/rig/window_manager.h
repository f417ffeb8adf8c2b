// A window manager that lets new windows wait.
#pragma once

#include <string>

#include "tests/end_to_end/rig/display_connection.h"

namespace end_to_end {

// Takes the place of the display's window manager, which must be free.
class WindowManager {
  public:
    explicit WindowManager(const std::string& display);

    // Waits until a program wants to show a window, and leaves it hidden. False when none does.
    [[nodiscard]] bool waitForWindow();

    // Shows the window that was waited for.
    void showWindow();

  private:
    DisplayConnection connection_;
    Window window_ = 0;
};

}  // namespace end_to_end
