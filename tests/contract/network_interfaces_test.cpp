// Which network interfaces make a machine count as online.
#include "platform/curl/network_interfaces.h"

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <ifaddrs.h>
#include <net/if.h>
#include <netinet/in.h>

#include <deque>
#include <string>
#include <vector>

#include "tests/contract/http_requests.h"

namespace {

struct Interface {
    unsigned flags;
    std::string address;  // IPv4 or IPv6; "link" is a link-layer address, and empty is no address.
};

std::vector<Interface> interfaces;
bool canBeListed = true;

constexpr unsigned upAndRunning = IFF_UP | IFF_RUNNING;

}  // namespace

// Replaces the C library's function.
extern "C" int getifaddrs(ifaddrs** list) noexcept {
    if (!canBeListed) return -1;
    static std::deque<sockaddr_in6> addresses;  // The largest address type.
    static std::deque<ifaddrs> entries;
    entries.clear();
    addresses.clear();
    for (const Interface& interface : interfaces) {
        auto* address = reinterpret_cast<sockaddr*>(&addresses.emplace_back());
        if (inet_pton(AF_INET6, interface.address.c_str(), &addresses.back().sin6_addr) == 1) {
            address->sa_family = AF_INET6;
        } else {
            address->sa_family = interface.address == "link" ? AF_UNIX : AF_INET;
        }
        ifaddrs& entry = entries.emplace_back();
        entry.ifa_flags = interface.flags;
        entry.ifa_addr = interface.address.empty() ? nullptr : address;
        if (entries.size() > 1) entries[entries.size() - 2].ifa_next = &entry;
    }
    *list = entries.empty() ? nullptr : &entries.front();
    return 0;
}

extern "C" void freeifaddrs(ifaddrs*) noexcept {}

namespace {

bool isUpWith(std::vector<Interface> those) {
    interfaces = std::move(those);
    return platform::networkIsUp();
}

TEST(NetworkInterfaces, ARunningInterfaceWithAnAddressCounts) {
    EXPECT_TRUE(isUpWith({{upAndRunning, "192.0.2.1"}}));
    EXPECT_TRUE(isUpWith({{upAndRunning, "2001:db8::1"}}));
    EXPECT_TRUE(isUpWith({{upAndRunning | IFF_LOOPBACK, "127.0.0.1"}, {upAndRunning, "link"}, {upAndRunning, "::2"}}));
}

TEST(NetworkInterfaces, NoInterfaceMeansNoNetwork) { EXPECT_FALSE(isUpWith({})); }

TEST(NetworkInterfaces, TheLoopbackInterfaceDoesNotCount) {
    EXPECT_FALSE(isUpWith({{upAndRunning | IFF_LOOPBACK, "127.0.0.1"}, {upAndRunning | IFF_LOOPBACK, "::1"}}));
}

TEST(NetworkInterfaces, AnInterfaceThatIsDownOrHasNoCarrierDoesNotCount) {
    EXPECT_FALSE(isUpWith({{0, "192.0.2.1"}, {IFF_UP, "192.0.2.1"}, {IFF_RUNNING, "192.0.2.1"}}));
}

TEST(NetworkInterfaces, AnInterfaceWithoutAGlobalAddressDoesNotCount) {
    EXPECT_FALSE(isUpWith({{upAndRunning, ""}, {upAndRunning, "link"}, {upAndRunning, "fe80::1"}}));
}

TEST(NetworkInterfaces, AnUnreadableListCountsAsANetwork) {
    canBeListed = false;
    EXPECT_TRUE(isUpWith({}));
    canBeListed = true;
}

TEST(HttpSession, ReportsAnUnknownHostWithANetworkAndBeingOfflineWithoutOne) {
    using namespace httpContract;
    interfaces = {{upAndRunning, "192.0.2.1"}};
    expectError(resultOf(post("http://name.invalid/")), -1003,
                "A server with the specified hostname could not be found.");
    interfaces.clear();
    expectError(resultOf(post("http://name.invalid/")), -1009, "The Internet connection appears to be offline.");
}

}  // namespace
