// The application as a whole.
#pragma once

#include "platform/ui.h"

namespace platform::application {

// Shows the window and runs the main queue on the calling thread, the main thread from now on, until the application
// ends. Then ends the process with status 0 at once, without waiting for threads or children.
[[noreturn]] void run(const WindowDescription& scene);

// Ends the application as if its user had quit it. Main thread only; returns.
void terminate();

}  // namespace platform::application
