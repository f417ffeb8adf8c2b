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
    ~Keyboard();

    // One key by its X name, with modifiers before it: "Tab", "space", "Return", "Shift+Tab", "Ctrl+q". False if the
    // keyboard has no such key.
    bool press(std::string_view chord);

  private:
    struct Connection;
    std::unique_ptr<Connection> connection_;
};

}  // namespace end_to_end
