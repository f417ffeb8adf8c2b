// What the two reports have in common.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/http.h"

// The report's address: `url` without the slashes at its ends, followed by `path`. Nothing else is mended.
[[nodiscard]] std::string reportEndpoint(const std::string& url, std::string_view path);

// The report as a request that gives up after 10 idle seconds.
[[nodiscard]] platform::HttpRequest reportRequest(platform::Url endpoint, std::string data);

// The body as text, null when there is none or when it is no text.
[[nodiscard]] const std::string* readable(const std::optional<std::string>& body);
