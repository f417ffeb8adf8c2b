// CoreFoundation's objects and texts in C++.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <cstddef>
#include <memory>
#include <string>
#include <type_traits>

namespace platform::coreFoundation {

struct Release {
    void operator()(CFTypeRef object) const { CFRelease(object); }
};

// A reference to release, as functions with "Create" or "Copy" in their name return it. May be null.
template <typename Reference>
using Owned = std::unique_ptr<std::remove_pointer_t<Reference>, Release>;

// False for null.
[[nodiscard]] inline bool isString(CFTypeRef object) {
    return object != nullptr && CFGetTypeID(object) == CFStringGetTypeID();
}

// In UTF-8, NUL characters included. A lone surrogate becomes "?".
[[nodiscard]] inline std::string utf8(CFStringRef string) {
    constexpr UInt8 forLoneSurrogates = '?';
    const CFIndex length = CFStringGetLength(string);
    const CFIndex capacity = CFStringGetMaximumSizeForEncoding(length, kCFStringEncodingUTF8);
    std::string text(static_cast<std::size_t>(capacity), '\0');
    CFIndex used = 0;
    CFStringGetBytes(string, CFRangeMake(0, length), kCFStringEncodingUTF8, forLoneSurrogates, false,
                     reinterpret_cast<UInt8*>(text.data()), capacity, &used);
    text.resize(static_cast<std::size_t>(used));
    return text;
}

// Null when `text` is not UTF-8.
[[nodiscard]] inline Owned<CFStringRef> cfString(const std::string& text) {
    return Owned<CFStringRef>(CFStringCreateWithBytes(kCFAllocatorDefault, reinterpret_cast<const UInt8*>(text.data()),
                                                      static_cast<CFIndex>(text.size()), kCFStringEncodingUTF8, false));
}

// Null when `text` is no URL.
[[nodiscard]] inline Owned<CFURLRef> cfUrl(const std::string& text) {
    return Owned<CFURLRef>(CFURLCreateWithBytes(kCFAllocatorDefault, reinterpret_cast<const UInt8*>(text.data()),
                                                static_cast<CFIndex>(text.size()), kCFStringEncodingUTF8, nullptr));
}

}  // namespace platform::coreFoundation
