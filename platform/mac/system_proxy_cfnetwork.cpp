// The proxies of System Settings, by CFNetwork. Proxies that a script chooses are ignored.
#include "platform/curl/system_proxy.h"

#include <CFNetwork/CFNetwork.h>

#include <optional>

#include "platform/mac/core_foundation.h"

namespace platform {

namespace {

using coreFoundation::Owned;

// Empty for "none", absent for what cannot be used.
std::optional<std::string> addressOf(CFDictionaryRef proxy) {
    const CFTypeRef type = CFDictionaryGetValue(proxy, kCFProxyTypeKey);
    const auto is = [type](CFStringRef kind) { return type != nullptr && CFEqual(type, kind); };
    if (is(kCFProxyTypeNone)) return "";
    // The proxy for https websites is itself reached by plain HTTP and forwards the connections.
    const bool isHttp = is(kCFProxyTypeHTTP) || is(kCFProxyTypeHTTPS);
    if (!isHttp && !is(kCFProxyTypeSOCKS)) return std::nullopt;

    const CFTypeRef host = CFDictionaryGetValue(proxy, kCFProxyHostNameKey);
    const CFTypeRef port = CFDictionaryGetValue(proxy, kCFProxyPortNumberKey);
    int number = 0;
    if (!coreFoundation::isString(host) || port == nullptr ||
        !CFNumberGetValue(static_cast<CFNumberRef>(port), kCFNumberIntType, &number)) {
        return std::nullopt;
    }
    std::string name = coreFoundation::utf8(static_cast<CFStringRef>(host));
    if (name.find(':') != std::string::npos) name = "[" + name + "]";  // An address of IPv6.
    return (isHttp ? "http://" : "socks5h://") + name + ":" + std::to_string(number);
}

}  // namespace

std::string systemProxyFor(const Url& url) {
    const Owned<CFURLRef> location = coreFoundation::cfUrl(url.absoluteString());
    const Owned<CFDictionaryRef> settings(CFNetworkCopySystemProxySettings());
    if (!location || !settings) return {};
    const Owned<CFArrayRef> proxies(CFNetworkCopyProxiesForURL(location.get(), settings.get()));
    if (!proxies) return {};
    for (CFIndex index = 0; index < CFArrayGetCount(proxies.get()); ++index) {
        const void* const proxy = CFArrayGetValueAtIndex(proxies.get(), index);
        if (auto address = addressOf(static_cast<CFDictionaryRef>(proxy))) return *address;
    }
    return {};
}

}  // namespace platform
