// Fakes of URLs and of Launch Services, which open them.
#include <CoreServices/CoreServices.h>

#include "tests/mac/fakes/objects.h"
#include "tests/mac/fakes/unicode.h"

using namespace recordingFakes;

CFURLRef CFURLCreateWithBytes(CFAllocatorRef, const UInt8* bytes, CFIndex byteCount, CFStringEncoding encoding,
                              CFURLRef base) {
    expectUtf8(encoding, "CFURLCreateWithBytes");
    EXPECT_EQ(base, nullptr);
    record("CFURLCreateWithBytes", std::string(viewOf(bytes, byteCount)));
    if (!mac().makesUrls) return nullptr;
    return referenceTo<CFURLRef>(newObject(url, utf16(viewOf(bytes, byteCount)).value(), "CFURLCreateWithBytes"));
}

OSStatus LSOpenCFURLRef(CFURLRef address, CFURLRef* launchedUrl) {
    EXPECT_EQ(launchedUrl, nullptr) << "the URL handed back would be one more to release";
    record("LSOpenCFURLRef", utf8(valueOf<std::u16string>(address, url, "LSOpenCFURLRef")));
    return mac().statusOfOpening;
}
