// Local dates by ICU, which alone of the libraries at hand knows the user's calendar and digits.
#include "platform/date.h"

#include <unicode/udat.h>
#include <unicode/uloc.h>
#include <unicode/unistr.h>

#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <memory>

namespace platform {

namespace {

// The variable that governs dates, in the order of locale(7). ICU by itself would ask the one for messages.
std::string environmentLocale() {
    for (const char* variable : {"LC_ALL", "LC_TIME", "LANG"}) {
        const char* value = std::getenv(variable);
        if (value != nullptr && *value != '\0') return value;
    }
    return "C";
}

// Without the encoding that the environment may name: "th_TH" for "th_TH.UTF-8".
std::string dateLocale() {
    std::array<char, ULOC_FULLNAME_CAPACITY> canonical{};
    UErrorCode error = U_ZERO_ERROR;
    uloc_canonicalize(environmentLocale().c_str(), canonical.data(), canonical.size() - 1, &error);
    return U_SUCCESS(error) ? canonical.data() : "en_US_POSIX";
}

// How far the local time is from GMT at that moment, as a zone of ICU's. The C library knows all that TZ may say; ICU
// knows zones by name alone.
icu::UnicodeString zoneAt(UDate moment) {
    const auto seconds = static_cast<std::time_t>(std::floor(moment / U_MILLIS_PER_SECOND));
    std::tm local{};
    localtime_r(&seconds, &local);
    const long offset = std::labs(local.tm_gmtoff);
    std::array<char, 32> zone{};
    std::snprintf(zone.data(), zone.size(), "GMT%c%02ld:%02ld:%02ld", local.tm_gmtoff < 0 ? '-' : '+', offset / 3600,
                  offset / 60 % 60, offset % 60);
    return icu::UnicodeString::fromUTF8(zone.data());
}

}  // namespace

std::string currentDate(const std::string& pattern) {
    const icu::UnicodeString format = icu::UnicodeString::fromUTF8(pattern);
    const UDate now = ucal_getNow();
    const icu::UnicodeString zone = zoneAt(now);
    UErrorCode error = U_ZERO_ERROR;
    const std::unique_ptr<UDateFormat, void (*)(UDateFormat*)> formatter(
        udat_open(UDAT_PATTERN, UDAT_PATTERN, dateLocale().c_str(), zone.getBuffer(), zone.length(), format.getBuffer(),
                  format.length(), &error),
        [](UDateFormat* opened) { udat_close(opened); });
    if (U_FAILURE(error)) return {};

    std::array<char16_t, 128> text{};
    const int32_t length =
        udat_format(formatter.get(), now, text.data(), static_cast<int32_t>(text.size()), nullptr, &error);
    if (U_FAILURE(error)) return {};
    std::string date;
    return icu::UnicodeString(text.data(), length).toUTF8String(date);
}

}  // namespace platform
