#include "platform/machine_uuid.h"

#include "tests/mac/recording_fakes.h"

using namespace recordingFakes;
using platform::platformUuid;

namespace {

using PlatformUuid = MacTest;

TEST_F(PlatformUuid, IsThePropertyOfThePlatformExpertWhichIsReleasedRightAfterTheRead) {
    mac().platformUuid = u"1D3F5B79-8C0E-5A24-B6D1-4E7F90A2C3B8";

    EXPECT_EQ(platformUuid(), "1D3F5B79-8C0E-5A24-B6D1-4E7F90A2C3B8");

    EXPECT_EQ(mac().calls, (std::vector<std::string>{
                               "IOServiceMatching(IOPlatformExpertDevice)",
                               "IOServiceGetMatchingService(dictionary)",
                               "IORegistryEntryCreateCFProperty(IOPlatformUUID)",
                               "IOObjectRelease()",
                               "CFGetTypeID(CFString)",
                               "CFStringGetLength()",
                               "CFStringGetBytes()",
                               "CFRelease(CFString of IORegistryEntryCreateCFProperty)",
                           }));
}

TEST_F(PlatformUuid, IsTheUnchangedText) {
    mac().platformUuid = u" 1d3f\u00fc\n";
    EXPECT_EQ(platformUuid(), " 1d3f\xc3\xbc\n");
}

TEST_F(PlatformUuid, IsAbsentWithoutAPlatformExpertAndReleasesNothing) {
    mac().hasPlatformExpert = false;
    mac().platformUuid = u"1D3F5B79-8C0E-5A24-B6D1-4E7F90A2C3B8";

    EXPECT_EQ(platformUuid(), std::nullopt);

    EXPECT_EQ(mac().calls, (std::vector<std::string>{
                               "IOServiceMatching(IOPlatformExpertDevice)",
                               "IOServiceGetMatchingService(dictionary)",
                           }));
}

TEST_F(PlatformUuid, IsQueriedEvenWithoutADictionary) {
    mac().makesMatchingDictionaries = false;
    mac().hasPlatformExpert = false;

    EXPECT_EQ(platformUuid(), std::nullopt);

    EXPECT_EQ(mac().calls, (std::vector<std::string>{
                               "IOServiceMatching(IOPlatformExpertDevice)",
                               "IOServiceGetMatchingService(null)",
                           }));
}

TEST_F(PlatformUuid, IsAbsentWithoutThePropertyAndReleasesThePlatformExpert) {
    EXPECT_EQ(platformUuid(), std::nullopt);

    EXPECT_EQ(mac().calls, (std::vector<std::string>{
                               "IOServiceMatching(IOPlatformExpertDevice)",
                               "IOServiceGetMatchingService(dictionary)",
                               "IORegistryEntryCreateCFProperty(IOPlatformUUID)",
                               "IOObjectRelease()",
                           }));
}

TEST_F(PlatformUuid, IsAbsentWhenThePropertyIsNoTextAndReleasesTheProperty) {
    for (const Value& property : {Value(std::int64_t{42}), Value(1.5), Value(true), Value(Array{})}) {
        mac().calls.clear();
        mac().platformUuid = property;

        EXPECT_EQ(platformUuid(), std::nullopt) << property.index();

        EXPECT_EQ(mac().callsOf("IOObjectRelease").size(), 1U) << property.index();
        EXPECT_EQ(mac().callsOf("CFRelease").size(), 1U) << property.index();
    }
}

}  // namespace
