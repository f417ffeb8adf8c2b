// Fakes of IOKit's services and properties.
#include <IOKit/IOKitLib.h>

#include "tests/mac/fakes/objects.h"
#include "tests/mac/fakes/unicode.h"

using namespace recordingFakes;

const mach_port_t kIOMainPortDefault = 0;

CFMutableDictionaryRef IOServiceMatching(const char* className) {
    record("IOServiceMatching", className);
    if (!mac().makesMatchingDictionaries) return nullptr;
    return referenceTo<CFMutableDictionaryRef>(newObject(dictionary, {}, "IOServiceMatching"));
}

io_service_t IOServiceGetMatchingService(mach_port_t mainPort, CFDictionaryRef matching) {
    EXPECT_EQ(mainPort, kIOMainPortDefault);
    record("IOServiceGetMatchingService", matching == nullptr ? "null" : "dictionary");
    if (matching != nullptr) {
        Object* known = livingObject(matching, dictionary, "IOServiceGetMatchingService");
        if (known != nullptr) --known->references;  // The function consumes the caller's reference.
    }
    if (!mac().hasPlatformExpert) return IO_OBJECT_NULL;
    const auto handle = static_cast<io_service_t>(0x1003 + heap().services.size());
    heap().services[handle] = {};
    return handle;
}

CFTypeRef IORegistryEntryCreateCFProperty(io_registry_entry_t entry, CFStringRef key, CFAllocatorRef, IOOptionBits) {
    const auto service = heap().services.find(entry);
    if (service == heap().services.end() || service->second.references == 0) {
        ADD_FAILURE() << "IORegistryEntryCreateCFProperty was given a service that is not there";
        return nullptr;
    }
    const auto name = valueOf<std::u16string>(key, string, "IORegistryEntryCreateCFProperty");
    record("IORegistryEntryCreateCFProperty", utf8(name));
    if (name != u"IOPlatformUUID" || !mac().platformUuid) return nullptr;
    return makeObject(*mac().platformUuid, "IORegistryEntryCreateCFProperty");
}

kern_return_t IOObjectRelease(io_object_t object) {
    record("IOObjectRelease");
    const auto service = heap().services.find(object);
    if (service == heap().services.end() || service->second.references == 0) {
        ADD_FAILURE() << "IOObjectRelease was given a service that is not there";
        return 1;
    }
    --service->second.references;
    return 0;
}
