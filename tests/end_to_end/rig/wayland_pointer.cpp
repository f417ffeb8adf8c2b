#include "tests/end_to_end/rig/wayland_pointer.h"

#include <linux/input-event-codes.h>
#include <wayland-client.h>

#include <array>
#include <chrono>
#include <cstdint>
#include <string_view>

namespace end_to_end {

namespace {

// The part of the virtual pointer protocol that is used here; no system header declares it. A request's number is its
// index in the list.
std::array<const wl_interface*, 5> plainTypes{};

enum PointerRequest : std::uint32_t { motionAbsolute = 1, button = 2, frame = 4 };
const std::array<wl_message, 5> pointerRequests{{{"motion", "uff", plainTypes.data()},
                                                 {"motion_absolute", "uuuuu", plainTypes.data()},
                                                 {"button", "uuu", plainTypes.data()},
                                                 {"axis", "uuf", plainTypes.data()},
                                                 {"frame", "", plainTypes.data()}}};
const wl_interface pointerInterface{"zwlr_virtual_pointer_v1", 1, 5, pointerRequests.data(), 0, nullptr};
std::array<const wl_interface*, 2> createPointerTypes{&wl_seat_interface, &pointerInterface};
const wl_message createPointerRequest{"create_virtual_pointer", "?on", createPointerTypes.data()};
const wl_interface pointerManagerInterface{"zwlr_virtual_pointer_manager_v1", 1, 1, &createPointerRequest, 0, nullptr};

constexpr std::uint32_t up = 0;
constexpr std::uint32_t down = 1;

struct Disconnect {
    void operator()(wl_display* display) const { wl_display_disconnect(display); }
};

// The library's own functions cast their objects in this way.
wl_proxy* asProxy(void* object) { return static_cast<wl_proxy*>(object); }

std::uint32_t now() {
    const auto time = std::chrono::steady_clock::now().time_since_epoch();
    return static_cast<std::uint32_t>(std::chrono::duration_cast<std::chrono::milliseconds>(time).count());
}

}  // namespace

// The compositor removes the pointer when the connection ends.
struct WaylandPointer::Connection {
    Connection() = default;
    ~Connection() {
        for (wl_proxy* const proxy : {pointer, pointerManager, seat, registry}) {
            if (proxy != nullptr) wl_proxy_destroy(proxy);
        }
    }
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    std::unique_ptr<wl_display, Disconnect> display;
    wl_proxy* registry = nullptr;
    wl_proxy* seat = nullptr;
    wl_proxy* pointerManager = nullptr;
    wl_proxy* pointer = nullptr;

    template <typename... Arguments>
    static void send(wl_proxy* device, std::uint32_t request, Arguments... arguments) {
        if (device != nullptr) wl_proxy_marshal_flags(device, request, nullptr, 1, 0, arguments...);
    }

    void createPointer() {
        if (pointerManager == nullptr || seat == nullptr) return;
        constexpr std::uint32_t creation = 0;
        pointer = wl_proxy_marshal_flags(pointerManager, creation, &pointerInterface, 1, 0, seat, nullptr);
    }

    // Waits until the compositor has received all earlier requests.
    void synchronize() const {
        if (display) wl_display_roundtrip(display.get());
    }

    void bindSeatAndPointerManager() {
        static const wl_registry_listener listener{
            [](void* data, wl_registry* all, std::uint32_t name, const char* interface, std::uint32_t) {
                auto& self = *static_cast<Connection*>(data);
                const auto bind = [&](wl_proxy*& global, const wl_interface& wanted) {
                    if (std::string_view(interface) != wanted.name || global != nullptr) return;
                    global = asProxy(wl_registry_bind(all, name, &wanted, 1));
                };
                bind(self.seat, wl_seat_interface);
                bind(self.pointerManager, pointerManagerInterface);
            },
            [](void*, wl_registry*, std::uint32_t) {}};
        wl_registry* const all = wl_display_get_registry(display.get());
        registry = asProxy(all);
        wl_registry_add_listener(all, &listener, this);
        synchronize();
    }
};

WaylandPointer::WaylandPointer(const std::string& display, int width, int height)
    : connection_(std::make_unique<Connection>()), width_(width), height_(height) {
    connection_->display.reset(wl_display_connect(display.c_str()));
    if (!connection_->display) return;
    connection_->bindSeatAndPointerManager();
    connection_->createPointer();
    connection_->synchronize();
}

WaylandPointer::~WaylandPointer() = default;

bool WaylandPointer::works() const { return connection_->pointer != nullptr; }

void WaylandPointer::moveTo(int x, int y) {
    Connection::send(connection_->pointer, motionAbsolute, now(), x, y, width_, height_);
    Connection::send(connection_->pointer, frame);
    connection_->synchronize();
}

void WaylandPointer::holdButton() {
    Connection::send(connection_->pointer, button, now(), static_cast<std::uint32_t>(BTN_LEFT), down);
    Connection::send(connection_->pointer, frame);
    connection_->synchronize();
}

void WaylandPointer::releaseButton() {
    Connection::send(connection_->pointer, button, now(), static_cast<std::uint32_t>(BTN_LEFT), up);
    Connection::send(connection_->pointer, frame);
    connection_->synchronize();
}

void WaylandPointer::click(int x, int y) {
    moveTo(x, y);
    holdButton();
    releaseButton();
}

}  // namespace end_to_end
