// The application: one window that holds the main view.
#pragma once

#include "platform/ui.h"

struct HardwareDetectorApp {
    // The one window, 600 by 500 points and without title bar, with a fresh main view in it.
    [[nodiscard]] platform::WindowDescription body() const;

    // Hands the calling thread over to the application; does not return.
    [[noreturn]] static void main();
};
