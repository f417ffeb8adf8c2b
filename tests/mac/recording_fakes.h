// A Mac for tests on other systems: fakes of the macOS functions that the back ends call. They answer what the test
// says and record each call. Their objects count references, and whatever breaks the rules of ownership fails the test.
//
// For one thread.
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

// What an object holds. Strings are UTF-16, as CoreFoundation counts their length.
using Value = std::variant<std::u16string, std::int64_t, double, bool, Array>;
using Values = std::map<std::u16string, Value>;

struct Mac {
    // The I/O Registry.
    bool makesMatchingDictionaries = true;
    bool hasPlatformExpert = true;
    std::optional<Value> platformUuid;

    // The preferences: as this process sees them, and as they are stored since it last synchronized.
    Values preferences;
    Values storedPreferences;

    // Dates.
    bool hasLocale = true;
    bool makesDateFormatters = true;
    CFAbsoluteTime now = 0;
    std::optional<std::u16string> date;  // What a formatter makes of the moment.

    // Launch Services.
    bool makesUrls = true;
    OSStatus statusOfOpening = noErr;

    // The proxies that the settings name, each a dictionary.
    bool hasProxySettings = true;
    bool listsProxies = true;
    std::vector<Values> proxies;

    // In order, each with its telling arguments: "IOServiceMatching(IOPlatformExpertDevice)".
    std::vector<std::string> calls;

    [[nodiscard]] std::vector<std::string> callsOf(std::string_view function) const;
};

// The one that the fakes speak for.
Mac& mac();

// A new object, as a function called `origin` would return it: the caller has the one reference to it.
[[nodiscard]] CFTypeRef makeObject(const Value& value, const std::string& origin);

// Adds a failure for each reference that was taken and is not yet released.
void expectNothingLeftToRelease();

// Begins with a Mac as above and no objects; ends with nothing left to release.
class MacTest : public testing::Test {
  protected:
    void SetUp() override;
    void TearDown() override;
};

}  // namespace recordingFakes
