#include "platform/device_registry.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <regex>

#include "tests/support/shell.h"

namespace {

using testSupport::quoted;
using testSupport::shell;

// The UUID on a machine whose identifier file has that text: a file laid over it in a mount namespace.
std::string uuidOn(const std::string& machineId) {
    const testSupport::TemporaryFolder folder;
    const std::filesystem::path file = folder.path() / "machine-id";
    std::ofstream(file, std::ios::binary) << machineId;
    const auto result = shell("unshare --mount --map-root-user sh -c " +
                              quoted("mount --bind " + file.string() + " /etc/machine-id && exec " CHILD_PATH));
    EXPECT_EQ(result.status, 0);
    return result.output;
}

constexpr const char* identifier = "0123456789abcdef0123456789abcdef";
// HMAC-SHA256 of the program's id by that key, computed apart from this program and marked as version 4.
constexpr const char* uuidOfIt = "CEF4BC65-65F6-45C6-B217-BD96DF4D8B51\n";

TEST(DeviceRegistry, IsInCanonicalUpperCase) {
    const std::string uuid = uuidOn(std::string(identifier) + "\n");
    const std::regex form("[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-[0-9A-F]{12}\n");
    EXPECT_TRUE(std::regex_match(uuid, form)) << uuid;
}

TEST(DeviceRegistry, NeverChangesForOneMachine) {
    // Another value would make every machine a new one.
    EXPECT_EQ(uuidOn(std::string(identifier) + "\n"), uuidOfIt);
    EXPECT_EQ(uuidOn(identifier), uuidOfIt);
}

TEST(DeviceRegistry, IsAnotherOneForAnotherMachine) {
    EXPECT_NE(uuidOn("1123456789abcdef0123456789abcdef\n"), uuidOn(std::string(identifier) + "\n"));
}

TEST(DeviceRegistry, KeepsTheMachinesOwnIdentifierToItself) {
    std::string uuid = uuidOn(std::string(identifier) + "\n");
    uuid.erase(std::remove(uuid.begin(), uuid.end(), '-'), uuid.end());
    std::transform(uuid.begin(), uuid.end(), uuid.begin(), [](unsigned char c) { return std::tolower(c); });
    const std::string known = identifier;
    for (std::size_t at = 0; at + 8 <= known.size(); ++at) {
        EXPECT_EQ(uuid.find(known.substr(at, 8)), std::string::npos) << known.substr(at, 8);
    }
}

TEST(DeviceRegistry, IsAbsentOnAMachineThatDoesNotSay) {
    for (const char* text : {"", "\n", "uninitialized\n", "0123", "not hexadecimal, but long enough for it\n"}) {
        EXPECT_EQ(uuidOn(text), "none\n") << text;
    }
}

TEST(DeviceRegistry, SaysTheSameAtEachCall) { EXPECT_EQ(platform::platformUuid(), platform::platformUuid()); }

}  // namespace
