// The store in the user's preferences, in the domain of the bundle's identifier, or of the program's name without a
// bundle. Keys and values that are not UTF-8 are neither found nor stored.
#include "platform/user_defaults.h"

#include "platform/mac/core_foundation.h"

namespace platform {

namespace {

using coreFoundation::Owned;

// Exchanges values with the system's daemon, and so with other processes.
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
    if (!coreFoundation::isString(value.get())) return std::nullopt;
    return coreFoundation::utf8(static_cast<CFStringRef>(value.get()));
}

void userDefaults::setString(const std::string& key, const std::string& value) {
    const Owned<CFStringRef> text = coreFoundation::cfString(value);
    set(key, text.get());
}

void userDefaults::setBool(const std::string& key, bool value) { set(key, value ? kCFBooleanTrue : kCFBooleanFalse); }

}  // namespace platform
