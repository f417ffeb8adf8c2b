// The user's web browser.
#pragma once

#include "platform/url.h"

namespace platform {

// Asks the desktop to open `url` in the default browser. Returns whether the desktop accepted it. A URL without a
// scheme would name a file and is refused. Call on the main thread; returns within about a second.
[[nodiscard]] bool openInBrowser(const Url& url);

}  // namespace platform
