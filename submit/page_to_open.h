// Which page of the website to open after it has stored a machine.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <variant>

#include "platform/json.h"
#include "platform/url.h"

// The website's own id of the stored machine, a number or a text as the website gave it.
using HardwareId = std::variant<std::int64_t, std::string>;

// The number in decimal, the text unchanged: no quotes, no percent-encoding.
[[nodiscard]] std::string textOf(const HardwareId& hardwareId);

struct PageToOpen {
    std::optional<platform::Url> page;            // Absent when nothing at hand makes a URL.
    std::optional<HardwareId> hardwareId;         // Absent when the answer holds none.
    std::optional<std::string> unusableRedirect;  // The answer's redirect, when it makes no URL.
};

// The page that the website's answer names: its redirect (taken as it stands when it begins with "http://" or
// "https://", else relative to the base URL and with the hardware id added to it), or the base URL with the hardware
// id, or at last the base URL as typed. Pure.
[[nodiscard]] PageToOpen pageToOpen(const platform::JsonObject& answer, const std::string& baseUrl);
