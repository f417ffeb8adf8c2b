#include "tests/end_to_end/rig/keyboard.h"

#include <X11/XKBlib.h>
#include <X11/extensions/XTest.h>
#include <X11/keysym.h>

#include <vector>

#include "tests/end_to_end/rig/display_connection.h"

namespace end_to_end {

struct Keyboard::Connection {
    DisplayConnection display;
};

namespace {

KeySym symbolNamed(const std::string& name) {
    if (name == "Ctrl") return XK_Control_L;
    if (name == "Shift") return XK_Shift_L;
    if (name == "Alt") return XK_Alt_L;
    return XStringToKeysym(name.c_str());
}

// The keys to press in this order and release in reverse. Empty if the keyboard lacks one of them.
std::vector<KeyCode> keysFor(Display* display, std::vector<KeySym> symbols) {
    std::vector<KeyCode> keys;
    const KeyCode last = symbols.empty() ? KeyCode{} : XKeysymToKeycode(display, symbols.back());
    if (last != 0 && XkbKeycodeToKeysym(display, last, 0, 0) != symbols.back()) keys = keysFor(display, {XK_Shift_L});
    for (const KeySym symbol : symbols) {
        const KeyCode key = symbol == NoSymbol ? KeyCode{} : XKeysymToKeycode(display, symbol);
        if (key == 0) return {};
        keys.push_back(key);
    }
    return keys;
}

bool strike(Display* display, const std::vector<KeyCode>& keys) {
    for (auto key = keys.begin(); key != keys.end(); ++key) XTestFakeKeyEvent(display, *key, 1, CurrentTime);
    for (auto key = keys.rbegin(); key != keys.rend(); ++key) XTestFakeKeyEvent(display, *key, 0, CurrentTime);
    XSync(display, 0);
    return !keys.empty();
}

}  // namespace

Keyboard::Keyboard(const std::string& display)
    : connection_(std::make_unique<Connection>(Connection{connectToDisplay(display)})) {}

Keyboard::~Keyboard() = default;

bool Keyboard::press(std::string_view chord) {
    std::vector<KeySym> symbols;
    for (std::size_t plus = 0; plus != std::string_view::npos;) {
        plus = chord.find('+');
        symbols.push_back(symbolNamed(std::string(chord.substr(0, plus))));
        if (plus != std::string_view::npos) chord.remove_prefix(plus + 1);
    }
    return strike(connection_->display.get(), keysFor(connection_->display.get(), symbols));
}

}  // namespace end_to_end
