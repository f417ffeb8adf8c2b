// Fakes of the macOS functions that the back ends call, for tests on other systems. The test sets their results, and
// they record each call. Their objects count references: a broken rule of ownership fails the test. Use them on one
// thread.
#pragma once

#include <CoreServices/CoreServices.h>
#include <IOKit/IOKitLib.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace recordingFakes {

struct Array {
    bool operator==(const Array&) const = default;
};

// The value of an object. Strings are UTF-16, like CoreFoundation's.
using Value = std::variant<std::u16string, std::int64_t, double, bool, Array>;
using Values = std::map<std::u16string, Value>;

struct Mac {
    // The I/O Registry.
    bool makesMatchingDictionaries = true;
    bool hasPlatformExpert = true;
    std::optional<Value> platformUuid;

    // The preferences as this process sees them, and as stored by its last synchronization.
    Values preferences;
    Values storedPreferences;

    // Dates.
    bool hasLocale = true;
    bool makesDateFormatters = true;
    CFAbsoluteTime now = 0;
    std::optional<std::u16string> date;  // The result of each formatter.

    // Launch Services.
    bool makesUrls = true;
    OSStatus statusOfOpening = noErr;

    // The proxies in the settings, each a dictionary.
    bool hasProxySettings = true;
    bool listsProxies = true;
    std::vector<Values> proxies;

    // The calls in order, with their relevant arguments: "IOServiceMatching(IOPlatformExpertDevice)".
    std::vector<std::string> calls;

    [[nodiscard]] std::vector<std::string> callsOf(std::string_view function) const;
};

// The machine that the fakes describe.
Mac& mac();

// A new object as returned by the function `origin`: the caller owns its only reference.
[[nodiscard]] CFTypeRef makeObject(const Value& value, const std::string& origin);

// Adds a failure for each reference that is not released.
void expectNothingLeftToRelease();

// Starts without objects; fails at the end if a reference is not released.
class MacTest : public testing::Test {
  protected:
    void SetUp() override;
    void TearDown() override;
};

}  // namespace recordingFakes
