// When a program's window is to be seen.
#pragma once

#include <chrono>
#include <functional>
#include <string>

#include "tests/end_to_end/rig/display_connection.h"

namespace benchmarks {

// One place of a display without a window manager, whose windows stand in the upper left corner.
class WatchedPlace {
  public:
    WatchedPlace(const std::string& display, int x, int y);

    // Its colour as 0xRRGGBB.
    [[nodiscard]] unsigned long colour() const;

    // Waits until the colour is another one than `before`, to a fifth of a millisecond; false when it is not within
    // half a minute.
    [[nodiscard]] bool waitForOtherThan(unsigned long before) const;

  private:
    end_to_end::DisplayConnection connection_;
    int x_;
    int y_;
};

}  // namespace benchmarks
