// Text: UTF-8, white space and decimal integers, by Unicode's rules and no locale's.
//
// Every text in this program is a std::string in UTF-8. All functions are pure and safe from any thread.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace platform {

// Whether the bytes are text: well-formed UTF-8, without a stray or overlong byte or an encoded surrogate. No bytes are
// the empty text; NUL and a byte order mark are ordinary characters.
[[nodiscard]] bool isUtf8(std::string_view bytes);

// Without white space at both ends: tab and the Unicode spaces (general category Zs). Line breaks stay, and so does the
// zero-width space U+200B, which is no space by category.
[[nodiscard]] std::string_view trimmedOfWhitespace(std::string_view text);

// Without white space and line breaks (U+000A to U+000D, U+0085, U+2028 and U+2029) at both ends.
[[nodiscard]] std::string_view trimmedOfWhitespaceAndNewlines(std::string_view text);

// Without "/" at both ends.
[[nodiscard]] std::string_view trimmedOfSlashes(std::string_view text);

// The pieces of `text` between white-space characters (tab and Zs), empty pieces left out.
[[nodiscard]] std::vector<std::string_view> columnsOf(std::string_view text);

// The pieces of `text` between occurrences of `separator`, empty pieces kept: always at least one.
[[nodiscard]] std::vector<std::string_view> piecesOf(std::string_view text, char separator);

// A signed 64-bit decimal integer: one optional "+" or "-", then ASCII digits, nothing before, between or after them.
// Absent for anything else and for a number out of range.
[[nodiscard]] std::optional<std::int64_t> integerFrom(std::string_view text);

}  // namespace platform
