// The desktop.
#pragma once

#include "platform/url.h"

namespace platform {

// Asks the desktop to open `url` in the user's default browser and says whether the desktop took it. False for a URL
// without a scheme: such a text would name a file. Call on the main thread; returns within about a second.
[[nodiscard]] bool openInBrowser(const Url& url);

}  // namespace platform
