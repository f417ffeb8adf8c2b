// The machine's UUID in the I/O Registry.
#include "platform/machine_uuid.h"

#include <IOKit/IOKitLib.h>

#include "platform/mac/core_foundation.h"

namespace platform {

namespace {

coreFoundation::Owned<CFTypeRef> platformUuidProperty() {
    // The look-up releases the dictionary. With a null dictionary it finds nothing.
    const io_service_t platformExpert =
        IOServiceGetMatchingService(kIOMainPortDefault, IOServiceMatching("IOPlatformExpertDevice"));
    if (platformExpert == IO_OBJECT_NULL) return {};
    coreFoundation::Owned<CFTypeRef> property(
        IORegistryEntryCreateCFProperty(platformExpert, CFSTR("IOPlatformUUID"), kCFAllocatorDefault, 0));
    IOObjectRelease(platformExpert);
    return property;
}

}  // namespace

std::optional<std::string> platformUuid() {
    const coreFoundation::Owned<CFTypeRef> property = platformUuidProperty();
    if (!coreFoundation::isString(property.get())) return std::nullopt;
    return coreFoundation::utf8(static_cast<CFStringRef>(property.get()));
}

}  // namespace platform
