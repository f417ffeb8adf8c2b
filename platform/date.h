// The calendar on the user's wall.
#pragma once

#include <string>

namespace platform {

// The current moment in the user's own locale, calendar, digits and time zone, written by `pattern` (Unicode TR 35,
// such as "yyyy-MM-dd"): 2024-06-01 for most, 2567-06-01 with a Thai region, Arabic digits with an Egyptian one. The
// clock is read at each call. Safe from any thread.
[[nodiscard]] std::string currentDate(const std::string& pattern);

}  // namespace platform
