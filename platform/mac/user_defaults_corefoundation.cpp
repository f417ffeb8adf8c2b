// The store in the user's preferences, in the domain of the bundle's identifier, or of the program's name where there
// is no bundle. Keys and values are UTF-8; what is not is neither found nor stored.
#include "platform/user_defaults.h"

#include <cstdint>
#include <limits>
#include <locale>
#include <sstream>

#include "platform/mac/core_foundation.h"

namespace platform {

namespace {

using coreFoundation::Owned;

// Not the way of the user's locale: a comma would come back as another number. A real number has the 16 digits that
// Foundation gives it.
std::string textOf(CFNumberRef number) {
    std::ostringstream text;
    text.imbue(std::locale::classic());
    std::int64_t integer = 0;
    if (!CFNumberIsFloatType(number) && CFNumberGetValue(number, kCFNumberSInt64Type, &integer)) {
        text << integer;
    } else {
        double real = 0;
        CFNumberGetValue(number, kCFNumberDoubleType, &real);
        text.precision(std::numeric_limits<double>::digits10 + 1);
        text << real;
    }
    return text.str();
}

// To the system's daemon and back: what other processes have stored by then is seen from here on.
void synchronize() { CFPreferencesAppSynchronize(kCFPreferencesCurrentApplication); }

void set(const std::string& key, CFPropertyListRef value) {
    const Owned<CFStringRef> name = coreFoundation::cfString(key);
    if (!name || value == nullptr) return;  // A null value would remove the key.
    CFPreferencesSetAppValue(name.get(), value, kCFPreferencesCurrentApplication);
    synchronize();
}

}  // namespace

std::optional<std::string> userDefaults::string(const std::string& key) {
    const Owned<CFStringRef> name = coreFoundation::cfString(key);
    if (!name) return std::nullopt;
    const Owned<CFPropertyListRef> value(CFPreferencesCopyAppValue(name.get(), kCFPreferencesCurrentApplication));
    if (!value) return std::nullopt;

    if (coreFoundation::isString(value.get())) return coreFoundation::utf8(static_cast<CFStringRef>(value.get()));
    const CFTypeID type = CFGetTypeID(value.get());
    if (type == CFBooleanGetTypeID()) return CFBooleanGetValue(static_cast<CFBooleanRef>(value.get())) ? "1" : "0";
    if (type == CFNumberGetTypeID()) return textOf(static_cast<CFNumberRef>(value.get()));
    return std::nullopt;
}

void userDefaults::setString(const std::string& key, const std::string& value) {
    const Owned<CFStringRef> text = coreFoundation::cfString(value);
    set(key, text.get());
}

void userDefaults::setBool(const std::string& key, bool value) { set(key, value ? kCFBooleanTrue : kCFBooleanFalse); }

// The store has no way to set a value only if there is none: between the look and the set another process may get in,
// and the later set stays. Looking once more narrows that gap without closing it. Two processes still agree as long as
// both offer the same value, as they do with the machine's own UUID; on a machine that has none, they may not.
std::string userDefaults::setStringIfAbsent(const std::string& key, const std::string& value) {
    synchronize();
    if (const std::optional<std::string> present = string(key)) return *present;
    setString(key, value);
    return string(key).value_or(value);
}

}  // namespace platform
