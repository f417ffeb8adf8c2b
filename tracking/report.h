// What the two reports have in common.
#pragma once

#include <chrono>
#include <string>
#include <string_view>

#include "platform/http.h"

// A report that stands still for this long is given up.
inline constexpr std::chrono::seconds reportTimeoutInterval{10};

// The report's address: `url` without the slashes at its ends, followed by `path`. Nothing else is changed.
[[nodiscard]] std::string reportEndpoint(const std::string& url, std::string_view path);

// The body as text; null when it is not UTF-8.
[[nodiscard]] const std::string* readableBody(const platform::HttpAnswer& answer);
