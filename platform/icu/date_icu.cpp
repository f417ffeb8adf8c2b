// Local dates by ICU, the only library at hand that knows the user's calendar and digits.
#include "platform/date.h"

#include <unicode/calendar.h>
#include <unicode/smpdtfmt.h>

#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <ctime>

namespace platform {

namespace {

// In the order of locale(7). By itself, ICU would read the variable for messages.
const char* environmentLocale() {
    for (const char* variable : {"LC_ALL", "LC_TIME", "LANG"}) {
        const char* value = std::getenv(variable);
        if (value != nullptr && *value != '\0') return value;
    }
    return "C";
}

// The local offset from GMT. The C library knows every form of TZ; ICU knows only names of zones.
icu::UnicodeString zoneAt(UDate moment) {
    const auto seconds = static_cast<std::time_t>(std::floor(moment / U_MILLIS_PER_SECOND));
    std::tm local{};
    localtime_r(&seconds, &local);
    const long offset = std::labs(local.tm_gmtoff);
    std::array<char, 32> zone{};
    std::snprintf(zone.data(), zone.size(), "GMT%c%02ld:%02ld", local.tm_gmtoff < 0 ? '-' : '+', offset / 3600,
                  offset / 60 % 60);
    return icu::UnicodeString::fromUTF8(zone.data());
}

}  // namespace

std::string currentDate(const std::string& pattern) {
    UErrorCode error = U_ZERO_ERROR;
    icu::SimpleDateFormat formatter(icu::UnicodeString::fromUTF8(pattern),
                                    icu::Locale::createCanonical(environmentLocale()), error);
    if (U_FAILURE(error)) return {};

    const UDate now = icu::Calendar::getNow();
    formatter.adoptTimeZone(icu::TimeZone::createTimeZone(zoneAt(now)));
    icu::UnicodeString text;
    std::string date;
    return formatter.format(now, text).toUTF8String(date);
}

}  // namespace platform
