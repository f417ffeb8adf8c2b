// Text: UTF-8, white space, decimal integers and regular expressions, by Unicode's rules and no locale's.
//
// Every text in this program is a std::string in UTF-8. All functions are pure and safe from any thread.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

// Whether the bytes are text: well-formed UTF-8, without a stray or overlong byte or an encoded surrogate. No bytes are
// the empty text; NUL and a byte order mark are ordinary characters.
[[nodiscard]] bool isUtf8(std::string_view bytes);

enum class UnicodeEncoding { utf16LittleEndian, utf16BigEndian, utf32LittleEndian, utf32BigEndian };

// The bytes as text; absent when they are not well-formed: a lone surrogate, a unit cut short. A byte order mark is an
// ordinary character.
[[nodiscard]] std::optional<std::string> textFrom(UnicodeEncoding encoding, std::string_view bytes);

// Both ends freed of white space: tab and the Unicode spaces (general category Zs). Line breaks stay, and so does the
// zero-width space U+200B, which is no space by category.
[[nodiscard]] std::string_view trimmedOfWhitespace(std::string_view text);

// Both ends freed of white space as above and of line breaks: U+000A to U+000D, U+0085, U+2028 and U+2029.
[[nodiscard]] std::string_view trimmedOfWhitespaceAndNewlines(std::string_view text);

// Both ends freed of "/", and of nothing else.
[[nodiscard]] std::string_view trimmedOfSlashes(std::string_view text);

// The pieces of `text` between white-space characters (tab and Zs), empty pieces left out.
[[nodiscard]] std::vector<std::string_view> columnsOf(std::string_view text);

// The pieces of `text` between occurrences of `separator`, empty pieces kept: always at least one.
[[nodiscard]] std::vector<std::string_view> piecesOf(std::string_view text, char separator);

// A signed 64-bit decimal integer: one optional "+" or "-", then ASCII digits, nothing before, between or after them.
// Absent for anything else and for a number out of range.
[[nodiscard]] std::optional<std::int64_t> integerFrom(std::string_view text);

// The first match of `pattern` in `text`, whole (label and group together); absent when there is none. `pattern` is in
// ICU's syntax: "." stops at every line break listed above, "\s" takes them and every white space, and the search is
// case-sensitive. `text` must be well-formed UTF-8.
[[nodiscard]] std::optional<std::string> firstMatch(std::string_view pattern, std::string_view text);

}  // namespace platform
