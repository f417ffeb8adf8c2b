// The other tests here rely on the fakes to fail when a rule of ownership is broken.
#include "tests/mac/recording_fakes.h"

#include <gtest/gtest-spi.h>

using namespace recordingFakes;

namespace {

using RecordingFakes = MacTest;

io_service_t platformExpert() {
    return IOServiceGetMatchingService(kIOMainPortDefault, IOServiceMatching("IOPlatformExpertDevice"));
}

TEST_F(RecordingFakes, FailOnAnObjectThatIsNeverReleased) {
    const CFTypeRef object = makeObject(u"text", "the test");

    EXPECT_NONFATAL_FAILURE(expectNothingLeftToRelease(), "CFString of the test was never released");

    CFRelease(object);
}

TEST_F(RecordingFakes, FailOnAServiceThatIsNeverReleased) {
    const io_service_t service = platformExpert();

    EXPECT_NONFATAL_FAILURE(expectNothingLeftToRelease(), "was never released");

    IOObjectRelease(service);
}

TEST_F(RecordingFakes, FailOnAMatchingDictionaryThatIsReleasedAfterTheLookUpTookIt) {
    const CFDictionaryRef dictionary = IOServiceMatching("IOPlatformExpertDevice");
    IOObjectRelease(IOServiceGetMatchingService(kIOMainPortDefault, dictionary));

    EXPECT_NONFATAL_FAILURE(CFRelease(dictionary), "after its release");
}

TEST_F(RecordingFakes, FailOnASecondRelease) {
    const CFTypeRef object = makeObject(u"text", "the test");
    CFRelease(object);

    EXPECT_NONFATAL_FAILURE(CFRelease(object), "CFString of the test after its release");
}

TEST_F(RecordingFakes, FailOnTheUseOfAnObjectAfterItsRelease) {
    const CFTypeRef object = makeObject(u"text", "the test");
    CFRelease(object);

    EXPECT_NONFATAL_FAILURE(CFGetTypeID(object), "after its release");
    EXPECT_NONFATAL_FAILURE(CFStringGetLength(static_cast<CFStringRef>(object)), "after its release");
}

TEST_F(RecordingFakes, FailOnTheReleaseOfAConstant) {
    EXPECT_NONFATAL_FAILURE(CFRelease(CFSTR("IOPlatformUUID")), "CFRelease was given a constant");
    EXPECT_NONFATAL_FAILURE(CFRelease(kCFBooleanTrue), "CFRelease was given a constant");
    EXPECT_NONFATAL_FAILURE(CFRelease(kCFPreferencesCurrentApplication), "CFRelease was given a constant");
}

TEST_F(RecordingFakes, FailOnNullAndUnknownPointers) {
    const int neighbour = 0;

    EXPECT_NONFATAL_FAILURE(CFRelease(nullptr), "CFRelease was given null");
    EXPECT_NONFATAL_FAILURE(CFRelease(&neighbour), "CFRelease was given what is no object");
}

TEST_F(RecordingFakes, FailOnAnObjectOfAnotherType) {
    const CFTypeRef object = makeObject(std::int64_t{7}, "the test");

    EXPECT_NONFATAL_FAILURE(CFStringGetLength(static_cast<CFStringRef>(object)), "instead of a CFString");

    CFRelease(object);
}

}  // namespace
