// Which page of the website to open after it has stored a machine.
#pragma once

#include <optional>
#include <string>

#include "platform/json.h"
#include "platform/url.h"

struct PageToOpen {
    std::optional<platform::Url> page;      // Absent when nothing at hand makes a URL.
    std::optional<std::string> hardwareId;  // A number in decimal, a text unchanged; absent when the answer holds none.
    std::optional<std::string> unusableRedirect;  // The answer's redirect, when it makes no URL.
};

// The page that the website's answer names: its redirect (taken as it stands when it begins with "http://" or
// "https://", else relative to the base URL and with the hardware id added to it), or the base URL with the hardware
// id, or at last the base URL as typed. Pure.
[[nodiscard]] PageToOpen pageToOpen(platform::JsonObject answer, const std::string& baseUrl);
