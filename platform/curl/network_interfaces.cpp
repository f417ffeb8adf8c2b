#include "platform/curl/network_interfaces.h"

#include <ifaddrs.h>
#include <net/if.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <cstring>
#include <memory>

namespace platform {

namespace {

bool reachesBeyondThisMachine(const sockaddr* address) {
    if (address == nullptr) return false;
    if (address->sa_family == AF_INET) return true;
    if (address->sa_family != AF_INET6) return false;
    // macOS gives a link-local address to interfaces that lead nowhere.
    sockaddr_in6 address6{};
    std::memcpy(&address6, address, sizeof address6);
    return !IN6_IS_ADDR_LINKLOCAL(&address6.sin6_addr);
}

}  // namespace

bool networkIsUp() {
    ifaddrs* interfaces = nullptr;
    if (getifaddrs(&interfaces) != 0) return true;
    const std::unique_ptr<ifaddrs, decltype(&freeifaddrs)> freed(interfaces, freeifaddrs);
    for (const ifaddrs* interface = interfaces; interface != nullptr; interface = interface->ifa_next) {
        const bool running = (interface->ifa_flags & IFF_UP) != 0 && (interface->ifa_flags & IFF_RUNNING) != 0;
        const bool loopback = (interface->ifa_flags & IFF_LOOPBACK) != 0;
        if (running && !loopback && reachesBeyondThisMachine(interface->ifa_addr)) return true;
    }
    return false;
}

}  // namespace platform
