#include "platform/device_registry.h"

#include "tests/mac/recording_fakes.h"

using namespace recordingFakes;
using platform::platformUuid;

namespace {

using PlatformUuid = MacTest;

template <typename Text>
Text repeated(const Text& text, int times) {
    Text all;
    for (int time = 0; time < times; ++time) all += text;
    return all;
}

std::vector<std::string> oneReleaseOfTheProperty(const std::string& kind) {
    return {"CFRelease(" + kind + " of IORegistryEntryCreateCFProperty)"};
}

TEST_F(PlatformUuid, IsThePropertyOfThePlatformExpert) {
    mac().platformUuid = u"1D3F5B79-8C0E-5A24-B6D1-4E7F90A2C3B8";

    EXPECT_EQ(platformUuid(), "1D3F5B79-8C0E-5A24-B6D1-4E7F90A2C3B8");

    EXPECT_EQ(mac().callsOf("IOServiceMatching"),
              std::vector<std::string>{"IOServiceMatching(IOPlatformExpertDevice)"});
    EXPECT_EQ(mac().callsOf("IORegistryEntryCreateCFProperty"),
              std::vector<std::string>{"IORegistryEntryCreateCFProperty(IOPlatformUUID)"});
}

TEST_F(PlatformUuid, LetsThePlatformExpertGoRightAfterTheReadAndThePropertyLast) {
    mac().platformUuid = u"1D3F5B79-8C0E-5A24-B6D1-4E7F90A2C3B8";

    static_cast<void>(platformUuid());

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

TEST_F(PlatformUuid, IsTheTextAsItStands) {
    struct Case {
        const char* description;
        std::u16string property;
        std::string uuid;
    };
    const std::vector<Case> cases = {
        {"lower case", u"1d3f5b79-8c0e-5a24-b6d1-4e7f90a2c3b8", "1d3f5b79-8c0e-5a24-b6d1-4e7f90a2c3b8"},
        {"white space around", u" \t1D3F\n", " \t1D3F\n"},
        {"no UUID at all", u"unknown", "unknown"},
        {"empty", u"", ""},
        {"two, three and four bytes a character", u"\u00fc \u20ac \U0001f5a5",
         "\xc3\xbc \xe2\x82\xac \xf0\x9f\x96\xa5"},
        {"a NUL inside", std::u16string(u"1D\0 3F", 6), std::string("1D\0 3F", 6)},
        {"long and not ASCII", repeated<std::u16string>(u"\u6a5f\u68b0 \U0001f5a5 ", 20000),
         repeated<std::string>("\xe6\xa9\x9f\xe6\xa2\xb0 \xf0\x9f\x96\xa5 ", 20000)},
    };
    for (const Case& given : cases) {
        mac().platformUuid = given.property;
        EXPECT_EQ(platformUuid(), given.uuid) << given.description;
    }
}

TEST_F(PlatformUuid, IsAbsentWithoutAPlatformExpertAndThenThereIsNothingToLetGo) {
    mac().hasPlatformExpert = false;
    mac().platformUuid = u"1D3F5B79-8C0E-5A24-B6D1-4E7F90A2C3B8";

    EXPECT_EQ(platformUuid(), std::nullopt);

    EXPECT_EQ(mac().calls, (std::vector<std::string>{
                               "IOServiceMatching(IOPlatformExpertDevice)",
                               "IOServiceGetMatchingService(dictionary)",
                           }));
}

TEST_F(PlatformUuid, IsLookedForWithoutADictionaryToo) {
    mac().makesMatchingDictionaries = false;
    mac().hasPlatformExpert = false;

    EXPECT_EQ(platformUuid(), std::nullopt);

    EXPECT_EQ(mac().calls, (std::vector<std::string>{
                               "IOServiceMatching(IOPlatformExpertDevice)",
                               "IOServiceGetMatchingService(null)",
                           }));
}

TEST_F(PlatformUuid, IsWhatTheRegistryFindsWithoutADictionary) {
    mac().makesMatchingDictionaries = false;
    mac().platformUuid = u"1D3F5B79-8C0E-5A24-B6D1-4E7F90A2C3B8";

    EXPECT_EQ(platformUuid(), "1D3F5B79-8C0E-5A24-B6D1-4E7F90A2C3B8");
}

TEST_F(PlatformUuid, IsAbsentWithoutThePropertyAndThePlatformExpertIsLetGo) {
    EXPECT_EQ(platformUuid(), std::nullopt);

    EXPECT_EQ(mac().calls, (std::vector<std::string>{
                               "IOServiceMatching(IOPlatformExpertDevice)",
                               "IOServiceGetMatchingService(dictionary)",
                               "IORegistryEntryCreateCFProperty(IOPlatformUUID)",
                               "IOObjectRelease()",
                           }));
}

TEST_F(PlatformUuid, IsAbsentWhenThePropertyIsNoTextAndThePropertyIsLetGoOnce) {
    struct Case {
        Value property;
        const char* kind;
    };
    const std::vector<Case> cases = {
        {std::int64_t{42}, "CFNumber"}, {1.5, "CFNumber"}, {true, "CFBoolean"}, {Array{}, "CFArray"}};
    for (const Case& given : cases) {
        mac().calls.clear();
        mac().platformUuid = given.property;

        EXPECT_EQ(platformUuid(), std::nullopt) << given.kind;

        EXPECT_EQ(mac().callsOf("IOObjectRelease").size(), 1U) << given.kind;
        EXPECT_EQ(mac().callsOf("CFRelease"), oneReleaseOfTheProperty(given.kind));
    }
}

}  // namespace
