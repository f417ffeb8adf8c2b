// The local date.
#pragma once

#include <string>

namespace platform {

// The current date by `pattern` (Unicode TR 35, such as "yyyy-MM-dd") in the user's locale, calendar, digits and time
// zone: 2024-06-01 for most, 2567-06-01 with a Thai region. Safe from any thread.
[[nodiscard]] std::string currentDate(const std::string& pattern);

}  // namespace platform
