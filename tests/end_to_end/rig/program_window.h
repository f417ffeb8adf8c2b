// The window of the program under test, treated as a window manager would.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <optional>
#include <string>

#include "tests/end_to_end/rig/patience.h"

namespace end_to_end {

class ProgramWindow {
  public:
    // Waits until the program shows a window on the display; absent when it does not within the limit.
    static std::optional<ProgramWindow> waitFor(const std::string& display, pid_t program,
                                                std::chrono::milliseconds limit = patience);

    int width() const { return width_; }    // when it was found, in pixels
    int height() const { return height_; }  // when it was found, in pixels

    // On a display without a window manager nobody else gives it the keyboard.
    void giveKeyboard() const;

    // Asks the program to close the window, as the window's close button would. The program may refuse.
    void askToClose() const;

  private:
    std::string display_;
    unsigned long window_ = 0;
    int width_ = 0;
    int height_ = 0;
};

}  // namespace end_to_end
