#include "tests/mac/fakes/unicode.h"

#include "tests/support/utf8.h"

namespace recordingFakes {

namespace {

constexpr bool isHighSurrogate(char32_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
constexpr bool isLowSurrogate(char32_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

}  // namespace

Character characterAt(std::u16string_view text, std::size_t position) {
    const char32_t unit = text[position];
    const char32_t next = position + 1 < text.size() ? text[position + 1] : 0;
    if (isHighSurrogate(unit) && isLowSurrogate(next)) {
        return {0x10000 + ((unit - 0xD800) << 10) + (next - 0xDC00), 2, false};
    }
    return {unit, 1, isHighSurrogate(unit) || isLowSurrogate(unit)};
}

std::string utf8(char32_t codePoint) { return testSupport::encoded({codePoint}); }

std::string utf8(std::u16string_view text) {
    std::string bytes;
    for (std::size_t position = 0; position < text.size();) {
        const Character character = characterAt(text, position);
        bytes += character.isHalfAPair ? "?" : utf8(character.codePoint);
        position += character.units;
    }
    return bytes;
}

std::optional<std::u16string> utf16(std::string_view bytes) {
    const std::optional<std::u32string> characters = testSupport::decoded(std::string(bytes));
    if (!characters) return std::nullopt;
    std::u16string text;
    for (const char32_t codePoint : *characters) {
        if (codePoint >= 0x10000) {
            text += static_cast<char16_t>(0xD800 + ((codePoint - 0x10000) >> 10));
            text += static_cast<char16_t>(0xDC00 + ((codePoint - 0x10000) & 0x3FF));
        } else {
            text += static_cast<char16_t>(codePoint);
        }
    }
    return text;
}

}  // namespace recordingFakes
