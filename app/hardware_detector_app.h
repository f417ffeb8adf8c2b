// The application: one window that holds the main view.
#pragma once

#include "platform/ui.h"

struct HardwareDetectorApp {
    // The one window, 600 by 500 points, with a new main view in it.
    [[nodiscard]] platform::WindowDescription body() const;

    // Runs the application on the calling thread.
    [[noreturn]] static void main();
};
