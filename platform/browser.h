// The user's web browser.
#pragma once

#include "platform/url.h"

namespace platform {

// Asks the desktop to open `url` in the default browser. Whether the desktop accepted it: never a URL without a scheme,
// which would name a file. Call on the main thread; returns within about a second.
[[nodiscard]] bool openInBrowser(const Url& url);

}  // namespace platform
