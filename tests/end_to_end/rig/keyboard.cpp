#include "tests/end_to_end/rig/keyboard.h"

#include <X11/extensions/XTest.h>
#include <X11/keysym.h>

#include <vector>

#include "tests/end_to_end/rig/display_connection.h"

namespace end_to_end {

Keyboard::Keyboard(const std::string& display) : display_(connectToDisplay(display)) {}

void Keyboard::press(std::string_view chord) const {
    constexpr std::string_view control = "Ctrl+";
    auto* const display = static_cast<Display*>(display_.get());
    std::vector<KeySym> symbols;
    if (chord.starts_with(control)) {
        symbols.push_back(XK_Control_L);
        chord.remove_prefix(control.size());
    }
    symbols.push_back(XStringToKeysym(std::string(chord).c_str()));
    const auto strike = [&](KeySym symbol, int isDown) {
        XTestFakeKeyEvent(display, XKeysymToKeycode(display, symbol), isDown, CurrentTime);
    };
    for (auto symbol = symbols.begin(); symbol != symbols.end(); ++symbol) strike(*symbol, 1);
    for (auto symbol = symbols.rbegin(); symbol != symbols.rend(); ++symbol) strike(*symbol, 0);
    XSync(display, 0);
}

}  // namespace end_to_end
