// Fakes of CoreFoundation's clock, locales and date formatters.
#include <CoreFoundation/CoreFoundation.h>

#include <sstream>

#include "tests/mac/fakes/objects.h"
#include "tests/mac/fakes/unicode.h"

using namespace recordingFakes;

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
