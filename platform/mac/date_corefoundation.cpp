// Local dates by CFDateFormatter, with the calendar and digits of Language & Region.
#include "platform/date.h"

#include "platform/mac/core_foundation.h"

namespace platform {

using coreFoundation::Owned;

std::string currentDate(const std::string& pattern) {
    const Owned<CFStringRef> format = coreFoundation::cfString(pattern);
    const Owned<CFLocaleRef> locale(CFLocaleCopyCurrent());
    const Owned<CFDateFormatterRef> formatter(
        CFDateFormatterCreate(kCFAllocatorDefault, locale.get(), kCFDateFormatterNoStyle, kCFDateFormatterNoStyle));
    if (!format || !formatter) return {};

    CFDateFormatterSetFormat(formatter.get(), format.get());
    const Owned<CFStringRef> date(
        CFDateFormatterCreateStringWithAbsoluteTime(kCFAllocatorDefault, formatter.get(), CFAbsoluteTimeGetCurrent()));
    if (!date) return {};
    return coreFoundation::utf8(date.get());
}

}  // namespace platform
