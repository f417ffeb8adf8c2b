#include "tests/end_to_end/rig/wayland_input.h"

#include <linux/input-event-codes.h>
#include <sys/mman.h>
#include <unistd.h>
#include <wayland-client.h>

#include <array>
#include <chrono>
#include <cstdint>
#include <string_view>

#include "tests/support/descriptor.h"

namespace end_to_end {

namespace {

// The two protocols by which a program plays pointer and keyboard, as far as they are used here. No header of the
// system declares them. A request's number is its place in the list.
std::array<const wl_interface*, 5> plainTypes{};

enum PointerRequest : std::uint32_t { motionAbsolute = 1, button = 2, frame = 4 };
const std::array<wl_message, 5> pointerRequests{{{"motion", "uff", plainTypes.data()},
                                                 {"motion_absolute", "uuuuu", plainTypes.data()},
                                                 {"button", "uuu", plainTypes.data()},
                                                 {"axis", "uuf", plainTypes.data()},
                                                 {"frame", "", plainTypes.data()}}};
const wl_interface pointerInterface{"zwlr_virtual_pointer_v1", 1, 5, pointerRequests.data(), 0, nullptr};
std::array<const wl_interface*, 2> createPointerTypes{&wl_seat_interface, &pointerInterface};
const wl_message createPointer{"create_virtual_pointer", "?on", createPointerTypes.data()};
const wl_interface pointerManagerInterface{"zwlr_virtual_pointer_manager_v1", 1, 1, &createPointer, 0, nullptr};

enum KeyboardRequest : std::uint32_t { keymap = 0, keyEvent = 1, modifiers = 2 };
const std::array<wl_message, 3> keyboardRequests{{{"keymap", "uhu", plainTypes.data()},
                                                  {"key", "uuu", plainTypes.data()},
                                                  {"modifiers", "uuuu", plainTypes.data()}}};
const wl_interface keyboardInterface{"zwp_virtual_keyboard_v1", 1, 3, keyboardRequests.data(), 0, nullptr};
std::array<const wl_interface*, 2> createKeyboardTypes{&wl_seat_interface, &keyboardInterface};
const wl_message createKeyboard{"create_virtual_keyboard", "on", createKeyboardTypes.data()};
const wl_interface keyboardManagerInterface{"zwp_virtual_keyboard_manager_v1", 1, 1, &createKeyboard, 0, nullptr};

constexpr std::string_view usKeyboard = R"keymap(xkb_keymap {
    xkb_keycodes { include "evdev+aliases(qwerty)"
};
xkb_types{include "complete"};
xkb_compat{include "complete"};
xkb_symbols{include "pc+us+inet(evdev)"};
};)keymap";

constexpr std::uint32_t controlModifier = 1U << 2U;
constexpr std::uint32_t up = 0;
constexpr std::uint32_t down = 1;

struct Disconnect {
    void operator()(wl_display* display) const { wl_display_disconnect(display); }
};

// What the library's own functions do with every object of theirs.
wl_proxy* asProxy(void* object) { return static_cast<wl_proxy*>(object); }

std::uint32_t now() {
    const auto time = std::chrono::steady_clock::now().time_since_epoch();
    return static_cast<std::uint32_t>(std::chrono::duration_cast<std::chrono::milliseconds>(time).count());
}

}  // namespace

// The compositor takes the devices away when the connection ends.
struct WaylandInput::Devices {
    Devices() = default;
    ~Devices() {
        for (wl_proxy* const proxy : {keyboard, pointer, keyboardManager, pointerManager, seat, registry}) {
            if (proxy != nullptr) wl_proxy_destroy(proxy);
        }
    }
    Devices(const Devices&) = delete;
    Devices& operator=(const Devices&) = delete;

    std::unique_ptr<wl_display, Disconnect> display;
    wl_proxy* registry = nullptr;
    wl_proxy* seat = nullptr;
    wl_proxy* pointerManager = nullptr;
    wl_proxy* keyboardManager = nullptr;
    wl_proxy* pointer = nullptr;
    wl_proxy* keyboard = nullptr;

    template <typename... Arguments>
    static void send(wl_proxy* device, std::uint32_t request, Arguments... arguments) {
        if (device != nullptr) wl_proxy_marshal_flags(device, request, nullptr, 1, 0, arguments...);
    }

    wl_proxy* create(wl_proxy* manager, const wl_interface& interface) const {
        if (manager == nullptr || seat == nullptr) return nullptr;
        constexpr std::uint32_t creation = 0;
        return wl_proxy_marshal_flags(manager, creation, &interface, 1, 0, seat, nullptr);
    }

    // Until the compositor has answered, so has taken all that was sent before.
    void synchronize() const {
        if (display) wl_display_roundtrip(display.get());
    }

    void bindWhatIsNeeded() {
        static const wl_registry_listener listener{
            [](void* data, wl_registry* all, std::uint32_t name, const char* interface, std::uint32_t) {
                auto& self = *static_cast<Devices*>(data);
                const auto bind = [&](wl_proxy*& global, const wl_interface& wanted) {
                    if (std::string_view(interface) != wanted.name || global != nullptr) return;
                    global = asProxy(wl_registry_bind(all, name, &wanted, 1));
                };
                bind(self.seat, wl_seat_interface);
                bind(self.pointerManager, pointerManagerInterface);
                bind(self.keyboardManager, keyboardManagerInterface);
            },
            [](void*, wl_registry*, std::uint32_t) {}};
        wl_registry* const all = wl_display_get_registry(display.get());
        registry = asProxy(all);
        wl_registry_add_listener(all, &listener, this);
        synchronize();
    }

    void giveKeyboardItsKeys() const {
        const testSupport::Descriptor file(memfd_create("keymap", MFD_CLOEXEC));
        const std::size_t size = usKeyboard.size() + 1;  // The zero at its end belongs to it.
        if (write(file.number(), usKeyboard.data(), size) != static_cast<ssize_t>(size)) return;
        send(keyboard, keymap, static_cast<std::uint32_t>(WL_KEYBOARD_KEYMAP_FORMAT_XKB_V1), file.number(),
             static_cast<std::uint32_t>(size));
    }

    void strike(unsigned key) const {
        send(keyboard, keyEvent, now(), key, down);
        send(keyboard, keyEvent, now(), key, up);
    }

    void hold(std::uint32_t mask) const { send(keyboard, modifiers, mask, 0U, 0U, 0U); }
};

WaylandInput::WaylandInput(const std::string& display, int width, int height)
    : devices_(std::make_unique<Devices>()), width_(width), height_(height) {
    devices_->display.reset(wl_display_connect(display.c_str()));
    if (!devices_->display) return;
    devices_->bindWhatIsNeeded();
    devices_->pointer = devices_->create(devices_->pointerManager, pointerInterface);
    devices_->keyboard = devices_->create(devices_->keyboardManager, keyboardInterface);
    devices_->giveKeyboardItsKeys();
    devices_->synchronize();
}

WaylandInput::~WaylandInput() = default;

bool WaylandInput::works() const { return devices_->pointer != nullptr && devices_->keyboard != nullptr; }

void WaylandInput::moveTo(int x, int y) {
    Devices::send(devices_->pointer, motionAbsolute, now(), x, y, width_, height_);
    Devices::send(devices_->pointer, frame);
    devices_->synchronize();
}

void WaylandInput::holdButton() {
    Devices::send(devices_->pointer, button, now(), static_cast<std::uint32_t>(BTN_LEFT), down);
    Devices::send(devices_->pointer, frame);
    devices_->synchronize();
}

void WaylandInput::releaseButton() {
    Devices::send(devices_->pointer, button, now(), static_cast<std::uint32_t>(BTN_LEFT), up);
    Devices::send(devices_->pointer, frame);
    devices_->synchronize();
}

void WaylandInput::click(int x, int y) {
    moveTo(x, y);
    holdButton();
    releaseButton();
}

void WaylandInput::press(unsigned key) {
    devices_->strike(key);
    devices_->synchronize();
}

void WaylandInput::pressWithControl(unsigned key) {
    devices_->hold(controlModifier);
    devices_->strike(key);
    devices_->hold(0);
    devices_->synchronize();
}

}  // namespace end_to_end
