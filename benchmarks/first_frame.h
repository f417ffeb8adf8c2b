// Measures when a program's window becomes visible.
#pragma once

#include <chrono>
#include <functional>
#include <string>

#include "tests/end_to_end/rig/display_connection.h"

namespace benchmarks {

// One pixel of a display without a window manager, whose windows are in the upper left corner.
class WatchedPlace {
  public:
    WatchedPlace(const std::string& display, int x, int y);

    // Its colour as 0xRRGGBB.
    [[nodiscard]] unsigned long colour() const;

    // Waits until the colour differs from `before`, with an accuracy of 0.2 ms; false after half a minute.
    [[nodiscard]] bool waitForOtherThan(unsigned long before) const;

  private:
    end_to_end::DisplayConnection connection_;
    int x_;
    int y_;
};

}  // namespace benchmarks
