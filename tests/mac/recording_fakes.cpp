#include "tests/mac/recording_fakes.h"

#include <algorithm>
#include <limits>
#include <memory>
#include <sstream>

namespace recordingFakes {

namespace {

enum Kind : CFTypeID { string = 1, number, boolean, array, dictionary, locale, dateFormatter, url };

std::string nameOf(CFTypeID kind) {
    switch (kind) {
        case string: return "CFString";
        case number: return "CFNumber";
        case boolean: return "CFBoolean";
        case array: return "CFArray";
        case dictionary: return "CFDictionary";
        case locale: return "CFLocale";
        case dateFormatter: return "CFDateFormatter";
        default: return "CFURL";
    }
}

Kind kindOf(const Value& value) {
    if (std::holds_alternative<std::u16string>(value)) return string;
    if (std::holds_alternative<bool>(value)) return boolean;
    if (std::holds_alternative<Array>(value)) return array;
    return number;
}

struct Object {
    Kind kind;
    Value value;
    std::string origin;
    bool isConstant = false;
    int references = 1;

    [[nodiscard]] std::string name() const { return nameOf(kind) + " of " + origin; }
};

struct Service {
    int references = 1;
};

// Released objects stay until the test ends, so that whoever still uses one is told so instead of crashing.
struct Heap {
    std::vector<std::unique_ptr<Object>> objects;
    std::map<io_object_t, Service> services;
};

Heap& heap() {
    static Heap instance;
    return instance;
}

template <typename Reference>
Reference referenceTo(Object& object) {
    return static_cast<Reference>(static_cast<void*>(&object));
}

Object& newObject(Kind kind, const Value& value, const std::string& origin) {
    heap().objects.push_back(std::make_unique<Object>(Object{kind, value, origin}));
    return *heap().objects.back();
}

// These live as long as the process, like their models.
Object yes{boolean, true, "kCFBooleanTrue", true};
Object no{boolean, false, "kCFBooleanFalse", true};
Object currentApplication{string, u"the current application", "kCFPreferencesCurrentApplication", true};

Object* objectAt(CFTypeRef reference) {
    for (Object* constant : {&yes, &no, &currentApplication}) {
        if (reference == constant) return constant;
    }
    for (const std::unique_ptr<Object>& object : heap().objects) {
        if (reference == object.get()) return object.get();
    }
    return nullptr;
}

// The object that `reference` names, if it may be used.
Object* livingObject(CFTypeRef reference, const std::string& function) {
    Object* object = objectAt(reference);
    if (object == nullptr) {
        ADD_FAILURE() << function << " was given " << (reference == nullptr ? "null" : "what is no object");
        return nullptr;
    }
    if (object->references == 0) {
        ADD_FAILURE() << function << " was given a " << object->name() << " after its release";
        return nullptr;
    }
    return object;
}

Object* livingObject(CFTypeRef reference, Kind kind, const std::string& function) {
    Object* object = livingObject(reference, function);
    if (object != nullptr && object->kind != kind) {
        ADD_FAILURE() << function << " was given a " << object->name() << " instead of a " << nameOf(kind);
        return nullptr;
    }
    return object;
}

template <typename Held>
Held valueOf(CFTypeRef reference, Kind kind, const std::string& function) {
    const Object* object = livingObject(reference, kind, function);
    return object == nullptr ? Held{} : std::get<Held>(object->value);
}

void expectUtf8(CFStringEncoding encoding, const std::string& function) {
    EXPECT_EQ(encoding, kCFStringEncodingUTF8) << function;
}

void expectCurrentApplication(CFStringRef application, const std::string& function) {
    EXPECT_EQ(application, kCFPreferencesCurrentApplication) << function;
}

constexpr bool isHighSurrogate(char32_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
constexpr bool isLowSurrogate(char32_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

struct Character {
    char32_t codePoint;
    std::size_t units;
    bool isHalfAPair;
};

Character characterAt(std::u16string_view text, std::size_t position) {
    const char32_t unit = text[position];
    if (isHighSurrogate(unit) && position + 1 < text.size() && isLowSurrogate(text[position + 1])) {
        return {0x10000 + ((unit - 0xD800) << 10) + (text[position + 1] - char32_t{0xDC00}), 2, false};
    }
    return {unit, 1, isHighSurrogate(unit) || isLowSurrogate(unit)};
}

std::string bytesOf(char32_t codePoint) {
    const auto continuation = [codePoint](unsigned shift) {
        return static_cast<char>(0x80 | (codePoint >> shift & 0x3F));
    };
    if (codePoint < 0x80) return {static_cast<char>(codePoint)};
    if (codePoint < 0x800) return {static_cast<char>(0xC0 | codePoint >> 6), continuation(0)};
    if (codePoint < 0x10000) return {static_cast<char>(0xE0 | codePoint >> 12), continuation(6), continuation(0)};
    return {static_cast<char>(0xF0 | codePoint >> 18), continuation(12), continuation(6), continuation(0)};
}

std::string utf8(std::u16string_view text) {
    std::string bytes;
    for (std::size_t position = 0; position < text.size();) {
        const Character character = characterAt(text, position);
        bytes += character.isHalfAPair ? "?" : bytesOf(character.codePoint);
        position += character.units;
    }
    return bytes;
}

struct Decoded {
    char32_t codePoint;
    std::size_t bytes;
};

// Absent when no character in UTF-8 stands there: truncated, overlong, half a surrogate pair or beyond Unicode.
std::optional<Decoded> decode(std::string_view text) {
    const auto lead = static_cast<unsigned char>(text[0]);
    if (lead < 0x80) return Decoded{lead, 1};
    const std::size_t count = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    if (lead < 0xC0 || lead >= 0xF8 || text.size() < count) return std::nullopt;
    char32_t codePoint = lead & (0xFFU >> (count + 1));
    for (const char byte : text.substr(1, count - 1)) {
        if ((byte & 0xC0) != 0x80) return std::nullopt;
        codePoint = codePoint << 6 | (static_cast<unsigned char>(byte) & 0x3FU);
    }
    const bool isHalfAPair = isHighSurrogate(codePoint) || isLowSurrogate(codePoint);
    if (codePoint > 0x10FFFF || isHalfAPair || bytesOf(codePoint).size() != count) return std::nullopt;
    return Decoded{codePoint, count};
}

std::optional<std::u16string> utf16(std::string_view bytes) {
    std::u16string text;
    while (!bytes.empty()) {
        const std::optional<Decoded> character = decode(bytes);
        if (!character) return std::nullopt;
        const char32_t codePoint = character->codePoint;
        if (codePoint >= 0x10000) {
            text += static_cast<char16_t>(0xD800 + ((codePoint - 0x10000) >> 10));
            text += static_cast<char16_t>(0xDC00 + ((codePoint - 0x10000) & 0x3FF));
        } else {
            text += static_cast<char16_t>(codePoint);
        }
        bytes.remove_prefix(character->bytes);
    }
    return text;
}

std::string_view viewOf(const UInt8* bytes, CFIndex count) {
    return {reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(count)};
}

void record(const std::string& function, const std::string& arguments = {}) {
    mac().calls.push_back(function + "(" + arguments + ")");
}

}  // namespace

std::vector<std::string> Mac::callsOf(std::string_view function) const {
    std::vector<std::string> found;
    std::copy_if(calls.begin(), calls.end(), std::back_inserter(found),
                 [function](std::string_view call) { return call.substr(0, call.find('(')) == function; });
    return found;
}

Mac& mac() {
    static Mac instance;
    return instance;
}

CFTypeRef makeObject(const Value& value, const std::string& origin) {
    return referenceTo<CFTypeRef>(newObject(kindOf(value), value, origin));
}

void expectNothingLeftToRelease() {
    for (const std::unique_ptr<Object>& object : heap().objects) {
        if (!object->isConstant && object->references != 0) ADD_FAILURE() << object->name() << " was never released";
    }
    for (const auto& [handle, service] : heap().services) {
        if (service.references != 0) ADD_FAILURE() << "service " << handle << " was never released";
    }
}

void MacTest::SetUp() {
    heap() = {};
    mac() = {};
}

void MacTest::TearDown() { expectNothingLeftToRelease(); }

}  // namespace recordingFakes

using namespace recordingFakes;

const CFAllocatorRef kCFAllocatorDefault = nullptr;
const CFBooleanRef kCFBooleanTrue = referenceTo<CFBooleanRef>(yes);
const CFBooleanRef kCFBooleanFalse = referenceTo<CFBooleanRef>(no);
const CFStringRef kCFPreferencesCurrentApplication = referenceTo<CFStringRef>(currentApplication);
const mach_port_t kIOMasterPortDefault = 0;

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
    --known->references;
}

CFStringRef standInConstantString(const char* text) {
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
    return 3 * length;  // A unit of UTF-16 is at most three bytes in UTF-8; a pair is four.
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
            character.isHalfAPair ? std::string(1, static_cast<char>(lossByte)) : bytesOf(character.codePoint);
        if (bytes.size() + next.size() > room) break;
        bytes += next;
        position += character.units;
    }
    if (buffer != nullptr) std::copy(bytes.begin(), bytes.end(), buffer);
    if (usedSize != nullptr) *usedSize = static_cast<CFIndex>(bytes.size());
    return static_cast<CFIndex>(position);
}

CFTypeID CFNumberGetTypeID() { return number; }

Boolean CFNumberIsFloatType(CFNumberRef object) {
    const Object* known = livingObject(object, number, "CFNumberIsFloatType");
    return known != nullptr && std::holds_alternative<double>(known->value);
}

// Writes the nearest value it can and says whether that is the number itself.
Boolean CFNumberGetValue(CFNumberRef object, CFNumberType type, void* value) {
    const Object* known = livingObject(object, number, "CFNumberGetValue");
    if (known == nullptr) return false;
    const auto* integer = std::get_if<std::int64_t>(&known->value);
    const auto* real = std::get_if<double>(&known->value);
    const auto* huge = std::get_if<HugeInteger>(&known->value);
    if (type == kCFNumberSInt64Type) {
        const std::int64_t nearest = integer != nullptr ? *integer
                                     : real != nullptr  ? static_cast<std::int64_t>(*real)
                                                        : std::numeric_limits<std::int64_t>::max();
        *static_cast<std::int64_t*>(value) = nearest;
        return integer != nullptr || (real != nullptr && static_cast<double>(nearest) == *real);
    }
    EXPECT_EQ(type, kCFNumberDoubleType) << "CFNumberGetValue";
    *static_cast<double*>(value) = integer != nullptr ? static_cast<double>(*integer)
                                   : real != nullptr  ? *real
                                                      : huge->nearestReal;
    return huge == nullptr;
}

CFTypeID CFBooleanGetTypeID() { return boolean; }

Boolean CFBooleanGetValue(CFBooleanRef object) { return valueOf<bool>(object, boolean, "CFBooleanGetValue"); }

CFPropertyListRef CFPreferencesCopyAppValue(CFStringRef key, CFStringRef application) {
    expectCurrentApplication(application, "CFPreferencesCopyAppValue");
    const auto name = valueOf<std::u16string>(key, string, "CFPreferencesCopyAppValue");
    record("CFPreferencesCopyAppValue", utf8(name));
    const auto preference = mac().preferences.find(name);
    if (preference == mac().preferences.end()) return nullptr;
    return makeObject(preference->second, "CFPreferencesCopyAppValue");
}

void CFPreferencesSetAppValue(CFStringRef key, CFPropertyListRef value, CFStringRef application) {
    expectCurrentApplication(application, "CFPreferencesSetAppValue");
    const auto name = valueOf<std::u16string>(key, string, "CFPreferencesSetAppValue");
    record("CFPreferencesSetAppValue", utf8(name));
    if (value == nullptr) {
        mac().preferences.erase(name);
        return;
    }
    const Object* known = livingObject(value, "CFPreferencesSetAppValue");
    if (known != nullptr) mac().preferences[name] = known->value;
}

Boolean CFPreferencesAppSynchronize(CFStringRef application) {
    expectCurrentApplication(application, "CFPreferencesAppSynchronize");
    record("CFPreferencesAppSynchronize");
    if (!mac().fromOtherProcesses.empty()) {
        for (const auto& [key, value] : mac().fromOtherProcesses.front()) mac().preferences[key] = value;
        mac().fromOtherProcesses.pop_front();
    }
    mac().storedPreferences = mac().preferences;
    return true;
}

CFLocaleRef CFLocaleCopyCurrent() {
    record("CFLocaleCopyCurrent");
    if (!mac().hasLocale) return nullptr;
    return referenceTo<CFLocaleRef>(newObject(locale, {}, "CFLocaleCopyCurrent"));
}

CFAbsoluteTime CFAbsoluteTimeGetCurrent() { return mac().now; }

CFDateFormatterRef CFDateFormatterCreate(CFAllocatorRef, CFLocaleRef userLocale, CFDateFormatterStyle dateStyle,
                                         CFDateFormatterStyle timeStyle) {
    record("CFDateFormatterCreate", userLocale == nullptr ? "null" : "locale");
    if (userLocale != nullptr) static_cast<void>(livingObject(userLocale, locale, "CFDateFormatterCreate"));
    EXPECT_EQ(dateStyle, kCFDateFormatterNoStyle);
    EXPECT_EQ(timeStyle, kCFDateFormatterNoStyle);
    if (!mac().makesDateFormatters) return nullptr;
    return referenceTo<CFDateFormatterRef>(newObject(dateFormatter, {}, "CFDateFormatterCreate"));
}

void CFDateFormatterSetFormat(CFDateFormatterRef formatter, CFStringRef format) {
    const auto pattern = valueOf<std::u16string>(format, string, "CFDateFormatterSetFormat");
    Object* known = livingObject(formatter, dateFormatter, "CFDateFormatterSetFormat");
    if (known != nullptr) known->value = pattern;
}

CFStringRef CFDateFormatterCreateStringWithAbsoluteTime(CFAllocatorRef, CFDateFormatterRef formatter,
                                                        CFAbsoluteTime moment) {
    constexpr const char* function = "CFDateFormatterCreateStringWithAbsoluteTime";
    std::ostringstream arguments;
    arguments << utf8(valueOf<std::u16string>(formatter, dateFormatter, function)) << ", " << moment;
    record(function, arguments.str());
    if (!mac().date) return nullptr;
    return referenceTo<CFStringRef>(newObject(string, *mac().date, function));
}

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

CFMutableDictionaryRef IOServiceMatching(const char* className) {
    record("IOServiceMatching", className);
    if (!mac().makesMatchingDictionaries) return nullptr;
    return referenceTo<CFMutableDictionaryRef>(newObject(dictionary, {}, "IOServiceMatching"));
}

io_service_t IOServiceGetMatchingService(mach_port_t mainPort, CFDictionaryRef matching) {
    EXPECT_EQ(mainPort, kIOMasterPortDefault);
    record("IOServiceGetMatchingService", matching == nullptr ? "null" : "dictionary");
    if (matching != nullptr) {
        Object* known = livingObject(matching, dictionary, "IOServiceGetMatchingService");
        if (known != nullptr) --known->references;  // It takes over the caller's reference.
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
