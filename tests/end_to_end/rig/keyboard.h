// Types on an X display.
#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace end_to_end {

// Keys go to the focused window (ProgramWindow::focus) by the XTEST extension, like a real keyboard's. Calls
// return once the keys are sent; the program handles them later.
class Keyboard {
  public:
    explicit Keyboard(const std::string& display);

    // One key by its X name, with or without Ctrl: "Tab", "space", "Ctrl+q".
    void press(std::string_view chord) const;

  private:
    std::shared_ptr<void> display_;  // Xlib's, whose macros break other headers.
};

}  // namespace end_to_end
