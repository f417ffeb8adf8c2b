// Fakes of CFNetwork's proxies and their containers.
#include <CFNetwork/CFNetwork.h>

#include "tests/mac/fakes/objects.h"
#include "tests/mac/fakes/unicode.h"

using namespace recordingFakes;

namespace {

CFStringRef constant(const char16_t* text) { return referenceTo<CFStringRef>(newConstant(string, text, "CFNetwork")); }

// The object belongs to its container: releasing it fails, and it is removed with the container.
Object& newEntry(Kind kind, const Value& value) {
    Object& entry = newObject(kind, value, "a container");
    entry.isConstant = true;
    return entry;
}

Object* entryOf(CFTypeRef container, Kind kind, const std::u16string& key, const std::string& function) {
    const Object* known = livingObject(container, kind, function);
    if (known == nullptr || !known->entries.contains(key)) return nullptr;
    return known->entries.at(key);
}

}  // namespace

const CFStringRef kCFProxyTypeKey = constant(u"type");
const CFStringRef kCFProxyHostNameKey = constant(u"host");
const CFStringRef kCFProxyPortNumberKey = constant(u"port");
const CFStringRef kCFProxyTypeNone = constant(u"none");
const CFStringRef kCFProxyTypeHTTP = constant(u"HTTP");
const CFStringRef kCFProxyTypeHTTPS = constant(u"HTTPS");
const CFStringRef kCFProxyTypeSOCKS = constant(u"SOCKS");

CFDictionaryRef CFNetworkCopySystemProxySettings() {
    record("CFNetworkCopySystemProxySettings");
    if (!mac().hasProxySettings) return nullptr;
    return referenceTo<CFDictionaryRef>(newObject(dictionary, {}, "CFNetworkCopySystemProxySettings"));
}

CFArrayRef CFNetworkCopyProxiesForURL(CFURLRef address, CFDictionaryRef settings) {
    record("CFNetworkCopyProxiesForURL", utf8(valueOf<std::u16string>(address, url, "CFNetworkCopyProxiesForURL")));
    livingObject(settings, dictionary, "CFNetworkCopyProxiesForURL");
    if (!mac().listsProxies) return nullptr;
    Object& all = newObject(array, Array{}, "CFNetworkCopyProxiesForURL");
    for (const Values& proxy : mac().proxies) {
        Object& entry = newEntry(dictionary, {});
        for (const auto& [key, value] : proxy) entry.entries[key] = &newEntry(kindOf(value), value);
        all.entries[utf16(std::to_string(all.entries.size())).value()] = &entry;
    }
    return referenceTo<CFArrayRef>(all);
}

CFIndex CFArrayGetCount(CFArrayRef all) {
    const Object* known = livingObject(all, array, "CFArrayGetCount");
    return known == nullptr ? 0 : static_cast<CFIndex>(known->entries.size());
}

const void* CFArrayGetValueAtIndex(CFArrayRef all, CFIndex index) {
    Object* entry = entryOf(all, array, utf16(std::to_string(index)).value(), "CFArrayGetValueAtIndex");
    EXPECT_NE(entry, nullptr) << "CFArrayGetValueAtIndex was given an index beyond the array";
    return entry;
}

const void* CFDictionaryGetValue(CFDictionaryRef entries, const void* key) {
    return entryOf(entries, dictionary, valueOf<std::u16string>(key, string, "CFDictionaryGetValue"),
                   "CFDictionaryGetValue");
}

Boolean CFEqual(CFTypeRef one, CFTypeRef other) {
    const Object* left = livingObject(one, "CFEqual");
    const Object* right = livingObject(other, "CFEqual");
    return left != nullptr && right != nullptr && left->kind == right->kind && left->value == right->value;
}

Boolean CFNumberGetValue(CFNumberRef held, CFNumberType type, void* value) {
    EXPECT_EQ(type, kCFNumberIntType);
    *static_cast<int*>(value) = static_cast<int>(valueOf<std::int64_t>(held, number, "CFNumberGetValue"));
    return true;
}
