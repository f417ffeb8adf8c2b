#include "benchmarks/first_frame.h"

#include <X11/Xutil.h>

#include <thread>

namespace benchmarks {

WatchedPlace::WatchedPlace(const std::string& display, int x, int y)
    : connection_(end_to_end::connectToDisplay(display)), x_(x), y_(y) {}

unsigned long WatchedPlace::colour() const {
    XImage* image =
        XGetImage(connection_.get(), DefaultRootWindow(connection_.get()), x_, y_, 1, 1, AllPlanes, ZPixmap);
    if (image == nullptr) return 0;
    const unsigned long pixel = XGetPixel(image, 0, 0) & 0xFFFFFFU;
    XDestroyImage(image);
    return pixel;
}

bool WatchedPlace::waitForOtherThan(unsigned long before) const {
    constexpr std::chrono::seconds limit{30};
    const auto deadline = std::chrono::steady_clock::now() + limit;
    while (colour() == before) {
        if (std::chrono::steady_clock::now() > deadline) return false;
        std::this_thread::sleep_for(std::chrono::microseconds(200));
    }
    return true;
}

}  // namespace benchmarks
