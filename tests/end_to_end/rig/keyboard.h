// The keyboard of a display.
#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace end_to_end {

// Keys go to the window that has the keyboard (ProgramWindow::giveKeyboard), through the same path as a real
// keyboard's, and are on their way when an operation returns; what the program makes of them comes later.
class Keyboard {
  public:
    explicit Keyboard(const std::string& display);
    ~Keyboard();

    // One key by its X name, with the modifiers to be held in front: "Tab", "space", "Return", "Shift+Tab", "Ctrl+q".
    // False when the keyboard has no such key.
    bool press(std::string_view chord);

  private:
    struct Connection;
    std::unique_ptr<Connection> connection_;
};

}  // namespace end_to_end
