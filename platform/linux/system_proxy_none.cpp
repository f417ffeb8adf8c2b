// Linux has no settings of proxies that all desktops share.
#include "platform/curl/system_proxy.h"

namespace platform {

std::string systemProxyFor(const Url&) { return {}; }

}  // namespace platform
