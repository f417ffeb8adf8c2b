// The part of CFNetwork that the macOS back ends use, declared after its public documentation.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

extern "C" {

extern const CFStringRef kCFProxyTypeKey;
extern const CFStringRef kCFProxyHostNameKey;
extern const CFStringRef kCFProxyPortNumberKey;
extern const CFStringRef kCFProxyTypeNone;
extern const CFStringRef kCFProxyTypeHTTP;
extern const CFStringRef kCFProxyTypeHTTPS;
extern const CFStringRef kCFProxyTypeSOCKS;

CFDictionaryRef CFNetworkCopySystemProxySettings();
CFArrayRef CFNetworkCopyProxiesForURL(CFURLRef url, CFDictionaryRef proxySettings);

}  // extern "C"
