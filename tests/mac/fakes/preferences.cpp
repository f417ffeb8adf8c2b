// Fakes of CoreFoundation's preferences.
#include <CoreFoundation/CoreFoundation.h>

#include "tests/mac/fakes/objects.h"
#include "tests/mac/fakes/unicode.h"

using namespace recordingFakes;

const CFStringRef kCFPreferencesCurrentApplication =
    referenceTo<CFStringRef>(newConstant(string, u"the current application", "kCFPreferencesCurrentApplication"));

namespace {

void expectCurrentApplication(CFStringRef application, const std::string& function) {
    EXPECT_EQ(application, kCFPreferencesCurrentApplication) << function;
}

}  // namespace

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
    mac().storedPreferences = mac().preferences;
    return true;
}
