// The proxies of the system's settings.
#pragma once

#include <string>

#include "platform/url.h"

namespace platform {

// The proxy that requests to `url` go through, as libcurl takes it: "http://host:port". Empty means none. May take
// milliseconds. Safe from any thread.
[[nodiscard]] std::string systemProxyFor(const Url& url);

}  // namespace platform
