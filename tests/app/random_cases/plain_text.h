// The oracle's own text functions: white space, numbers and JSON strings.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "tests/support/utf8.h"

namespace randomCases {

using Text = std::u32string;

using testSupport::decoded;
using testSupport::encoded;

[[nodiscard]] bool isBlank(char32_t c);  // White space other than line breaks.
[[nodiscard]] bool isLineBreak(char32_t c);
[[nodiscard]] bool isBlankOrLineBreak(char32_t c);
[[nodiscard]] Text trimmed(Text text, bool (*isTrimmed)(char32_t));

// The value of an optional sign and decimal digits; absent if it does not fit 64 bits.
[[nodiscard]] std::optional<std::int64_t> integer(const Text& text);

// The text as a JSON string, with as few escapes as possible.
[[nodiscard]] std::string jsonString(const std::string& text);

// The text of a JSON string; absent for other values. Supports only the escapes that the generator uses.
[[nodiscard]] std::optional<std::string> stringIn(const std::string& json);

}  // namespace randomCases
