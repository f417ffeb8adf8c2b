// Fakes of CoreFoundation's references, strings and booleans.
#include <CoreFoundation/CoreFoundation.h>

#include <algorithm>
#include <limits>

#include "tests/mac/fakes/objects.h"
#include "tests/mac/fakes/unicode.h"

using namespace recordingFakes;

const CFAllocatorRef kCFAllocatorDefault = nullptr;
const CFBooleanRef kCFBooleanTrue = referenceTo<CFBooleanRef>(newConstant(boolean, true, "kCFBooleanTrue"));
const CFBooleanRef kCFBooleanFalse = referenceTo<CFBooleanRef>(newConstant(boolean, false, "kCFBooleanFalse"));

namespace {

// Destroys the entries together with their container.
void loseEntries(const Object& container) {
    for (const auto& [key, entry] : container.entries) {
        entry->references = 0;
        loseEntries(*entry);
    }
}

}  // namespace

CFTypeID CFGetTypeID(CFTypeRef object) {
    const Object* known = livingObject(object, "CFGetTypeID");
    record("CFGetTypeID", known == nullptr ? "" : nameOf(known->kind));
    return known == nullptr ? CFTypeID{0} : CFTypeID{known->kind};
}

void CFRelease(CFTypeRef object) {
    Object* known = livingObject(object, "CFRelease");
    if (known == nullptr) return;
    record("CFRelease", known->name());
    if (known->isConstant) {
        ADD_FAILURE() << "CFRelease was given a constant, the " << known->name();
        return;
    }
    if (--known->references == 0) loseEntries(*known);
}

CFStringRef fakeConstantString(const char* text) {
    Object& constant = newObject(string, utf16(text).value(), "CFSTR");
    constant.isConstant = true;
    return referenceTo<CFStringRef>(constant);
}

CFTypeID CFStringGetTypeID() { return string; }

CFStringRef CFStringCreateWithBytes(CFAllocatorRef, const UInt8* bytes, CFIndex byteCount, CFStringEncoding encoding,
                                    Boolean isExternalRepresentation) {
    expectUtf8(encoding, "CFStringCreateWithBytes");
    EXPECT_FALSE(isExternalRepresentation);
    const std::optional<std::u16string> text = utf16(viewOf(bytes, byteCount));
    if (!text) return nullptr;
    return referenceTo<CFStringRef>(newObject(string, *text, "CFStringCreateWithBytes"));
}

CFIndex CFStringGetLength(CFStringRef text) {
    record("CFStringGetLength");
    return static_cast<CFIndex>(valueOf<std::u16string>(text, string, "CFStringGetLength").size());
}

CFIndex CFStringGetMaximumSizeForEncoding(CFIndex length, CFStringEncoding encoding) {
    expectUtf8(encoding, "CFStringGetMaximumSizeForEncoding");
    return 3 * length;  // A unit of UTF-16 takes at most three bytes in UTF-8; a pair takes four.
}

CFIndex CFStringGetBytes(CFStringRef text, CFRange range, CFStringEncoding encoding, UInt8 lossByte,
                         Boolean isExternalRepresentation, UInt8* buffer, CFIndex bufferSize, CFIndex* usedSize) {
    record("CFStringGetBytes");
    expectUtf8(encoding, "CFStringGetBytes");
    EXPECT_FALSE(isExternalRepresentation);
    const auto whole = valueOf<std::u16string>(text, string, "CFStringGetBytes");
    if (range.location < 0 || range.length < 0 || range.location + range.length > static_cast<CFIndex>(whole.size())) {
        ADD_FAILURE() << "CFStringGetBytes was given a range beyond the string";
        return 0;
    }
    const std::u16string part =
        whole.substr(static_cast<std::size_t>(range.location), static_cast<std::size_t>(range.length));
    const auto room =
        buffer == nullptr ? std::numeric_limits<std::size_t>::max() : static_cast<std::size_t>(bufferSize);

    std::string bytes;
    std::size_t position = 0;
    while (position < part.size()) {
        const Character character = characterAt(part, position);
        if (character.isHalfAPair && lossByte == 0) break;
        const std::string next =
            character.isHalfAPair ? std::string(1, static_cast<char>(lossByte)) : utf8(character.codePoint);
        if (bytes.size() + next.size() > room) break;
        bytes += next;
        position += character.units;
    }
    if (buffer != nullptr) std::copy(bytes.begin(), bytes.end(), buffer);
    if (usedSize != nullptr) *usedSize = static_cast<CFIndex>(bytes.size());
    return static_cast<CFIndex>(position);
}
