// The application as a whole.
#pragma once

#include "platform/ui.h"

namespace platform::application {

// Makes and shows the one window and runs the main queue on the calling thread, which becomes the main thread, until
// the application is ended; then ends the process with status 0 at once, whatever other threads and children still do.
[[noreturn]] void run(const WindowDescription& scene);

// Ends the application as if its user had quit it. Main thread only; returns.
void terminate();

}  // namespace platform::application
