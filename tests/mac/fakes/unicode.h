// Conversions between UTF-16 and UTF-8 like the system's.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace recordingFakes {

struct Character {
    char32_t codePoint;
    std::size_t units;  // Of UTF-16.
    bool isHalfAPair;
};

[[nodiscard]] Character characterAt(std::u16string_view text, std::size_t position);

[[nodiscard]] std::string utf8(char32_t codePoint);

// Half a surrogate pair becomes a question mark.
[[nodiscard]] std::string utf8(std::u16string_view text);

// Absent if the bytes are no valid UTF-8.
[[nodiscard]] std::optional<std::u16string> utf16(std::string_view bytes);

}  // namespace recordingFakes
