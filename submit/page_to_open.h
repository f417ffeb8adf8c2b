// Which page of the website to open after it has stored a machine.
#pragma once

#include <optional>
#include <string>

#include "platform/json.h"
#include "platform/url.h"

struct PageToOpen {
    std::optional<platform::Url> page;      // Absent when neither redirect nor base URL is a URL.
    std::optional<std::string> hardwareId;  // A number in decimal, a text unchanged; absent when the answer holds none.
    std::optional<std::string> unusableRedirect;  // The answer's redirect, if it is no URL.
};

// The page that the answer names: its redirect (unchanged if it begins with "http://" or "https://", else below the
// base URL and with the hardware id added), or the base URL with the hardware id, or else the base URL as typed. Pure.
[[nodiscard]] PageToOpen pageToOpen(platform::JsonObject answer, const std::string& baseUrl);
