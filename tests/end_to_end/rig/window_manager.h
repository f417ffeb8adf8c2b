// A window manager that delays showing a new window.
#pragma once

#include <string>

#include "tests/end_to_end/rig/display_connection.h"

namespace end_to_end {

// The display must have no other window manager.
class WindowManager {
  public:
    explicit WindowManager(const std::string& display);

    // Waits until a program requests to show a window, and leaves it hidden. False after the limit.
    [[nodiscard]] bool waitForWindow();

    // Shows that window.
    void showWindow();

  private:
    DisplayConnection connection_;
    Window window_ = 0;
};

}  // namespace end_to_end
