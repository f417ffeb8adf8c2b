// The part of IOKit that the macOS back ends use, declared after its public documentation.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

extern "C" {

typedef unsigned int mach_port_t;
typedef int kern_return_t;
typedef mach_port_t io_object_t;
typedef io_object_t io_registry_entry_t;
typedef io_object_t io_service_t;
typedef UInt32 IOOptionBits;

#define IO_OBJECT_NULL (io_object_t{0})

extern const mach_port_t kIOMainPortDefault;

CFMutableDictionaryRef IOServiceMatching(const char* className);
io_service_t IOServiceGetMatchingService(mach_port_t mainPort, CFDictionaryRef matching);
CFTypeRef IORegistryEntryCreateCFProperty(io_registry_entry_t entry, CFStringRef key, CFAllocatorRef allocator,
                                          IOOptionBits options);
kern_return_t IOObjectRelease(io_object_t object);

}  // extern "C"
