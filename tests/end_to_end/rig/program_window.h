// Finds and controls the window of the program under test, as a window manager would.
#pragma once

#include <sys/types.h>

#include <optional>
#include <string>

namespace end_to_end {

class ProgramWindow {
  public:
    // Waits until the program shows a window on the display; absent after the limit.
    static std::optional<ProgramWindow> waitFor(const std::string& display, pid_t program);

    // Gives the window the keyboard focus: there is no window manager to do so.
    void focus() const;

    // Asks the program to close the window, like a close button.
    void askToClose() const;

  private:
    std::string display_;
    unsigned long window_ = 0;
};

}  // namespace end_to_end
