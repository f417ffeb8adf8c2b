// Texts as the plain model understands them, without any library: characters, white space, numbers, JSON strings.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "tests/support/utf8.h"

namespace end_to_end {

using Text = std::u32string;

using testSupport::decoded;
using testSupport::encoded;

[[nodiscard]] bool isBlank(char32_t c);  // White space that breaks no line.
[[nodiscard]] bool isLineBreak(char32_t c);
[[nodiscard]] bool isBlankOrLineBreak(char32_t c);
[[nodiscard]] Text trimmed(Text text, bool (*isTrimmed)(char32_t));

// An optional sign and decimal digits, within the bounds of 64 bits.
[[nodiscard]] std::optional<std::int64_t> integer(const Text& text);

// As a JSON string with the least of escapes.
[[nodiscard]] std::string jsonString(const std::string& text);

// The text of a JSON string as the generator writes them; absent for all other values.
[[nodiscard]] std::optional<std::string> stringIn(const std::string& json);

}  // namespace end_to_end
