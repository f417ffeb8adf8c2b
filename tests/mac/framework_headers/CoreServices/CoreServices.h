// The part of CoreServices that the macOS back ends use, declared after its public documentation.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

extern "C" {

OSStatus LSOpenCFURLRef(CFURLRef url, CFURLRef* launchedUrl);

}  // extern "C"
