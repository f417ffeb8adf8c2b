#include "platform/machine_uuid.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>

#include "tests/support/files.h"
#include "tests/support/own_mounts.h"
#include "tests/support/shell.h"

namespace {

using testSupport::quoted;
using testSupport::shellWithOwnMounts;
using testSupport::whyNoOwnMounts;

// An /etc with only the test's machine-id, and the cache that the loader needs.
class MachineIdFile : public testing::Test {
  protected:
    void SetUp() override {
        if (const auto refusal = whyNoOwnMounts()) GTEST_SKIP() << *refusal;
        std::filesystem::copy_file("/etc/ld.so.cache", etc_.path() / "ld.so.cache");
    }

    [[nodiscard]] std::filesystem::path file() const { return etc_.path() / "machine-id"; }
    void write(const std::string& text) const { std::ofstream(file(), std::ios::binary) << text; }

    [[nodiscard]] std::string uuid() const {
        const auto result = shellWithOwnMounts("mount --bind " + quoted(etc_.path()) + " /etc && exec " CHILD_PATH);
        EXPECT_EQ(result.status, 0);
        return result.output;
    }

    [[nodiscard]] std::string uuidOn(const std::string& machineId) const {
        write(machineId);
        return uuid();
    }

  private:
    testSupport::TemporaryFolder etc_;
};

constexpr const char* identifier = "0123456789abcdef0123456789abcdef";
// HMAC-SHA256 of the program's id with that key, computed by another tool and marked as version 4.
constexpr const char* uuidOfIt = "CEF4BC65-65F6-45C6-B217-BD96DF4D8B51\n";

TEST_F(MachineIdFile, AlwaysGivesTheSameUuid) {
    // Another value would change the id of every machine.
    EXPECT_EQ(uuidOn(std::string(identifier) + "\n"), uuidOfIt);
    EXPECT_EQ(uuidOn(identifier), uuidOfIt);
}

TEST_F(MachineIdFile, GivesAnotherUuidOnAnotherMachine) {
    EXPECT_EQ(uuidOn("d123456789abcdef0123456789abcdef\n"), "E319092A-986E-4059-9935-889B253DA048\n");
}

// A lenient reader would give several of these the same UUID.
TEST_F(MachineIdFile, InvalidContentMeansNoUuid) {
    for (const char* text : {"", "\n", "uninitialized\n", "0123", "not hexadecimal, but long enough for it\n",
                             "machine 0123456789abcdef\n", "01234567-89ab-cdef-0123-456789abcdef\n",
                             "g123456789abcdef0123456789abcdef\n", "0123456789abcdef0123456789abcde\n",
                             " 0123456789abcdef0123456789abcdef\n", "0123456789abcdef 0123456789abcdef\n",
                             "0123456789abcdef0123456789abcdef00\n", "00000000000000000000000000000000\n"}) {
        EXPECT_EQ(uuidOn(text), "none\n") << text;
    }
}

TEST_F(MachineIdFile, AMissingFileAFolderOrABrokenLinkMeansNoUuid) {
    ASSERT_FALSE(std::filesystem::exists(file()));
    EXPECT_EQ(uuid(), "none\n");
    std::filesystem::create_directory(file());
    EXPECT_EQ(uuid(), "none\n");
    std::filesystem::remove(file());
    std::filesystem::create_symlink("missing", file());
    EXPECT_EQ(uuid(), "none\n");
}

TEST_F(MachineIdFile, IsNotPartOfTheUuid) {
    // Has the bits of a version 4 UUID, so that a copy of it would look valid.
    const std::string known = "4F1A2B3C5D6E4F708192A3B4C5D6E7F8";
    std::string uuid = uuidOn("4f1a2b3c5d6e4f708192a3b4c5d6e7f8\n");
    ASSERT_EQ(uuid.size(), 37U) << uuid;
    uuid.erase(std::remove(uuid.begin(), uuid.end(), '-'), uuid.end());
    for (std::size_t at = 0; at + 8 <= known.size(); ++at) {
        EXPECT_EQ(uuid.find(known.substr(at, 8)), std::string::npos) << known.substr(at, 8);
    }
}

TEST_F(MachineIdFile, AloneDeterminesTheUuid) {
    const std::string before = uuidOn(identifier);
    setenv("HOME", "/nonexistent", 1);
    setenv("USER", "somebody", 1);
    EXPECT_EQ(uuid(), before);
}

}  // namespace
