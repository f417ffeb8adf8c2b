#include "tests/mac/fakes/unicode.h"

namespace recordingFakes {

namespace {

constexpr bool isHighSurrogate(char32_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
constexpr bool isLowSurrogate(char32_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

struct Decoded {
    char32_t codePoint;
    std::size_t bytes;
};

// Absent when no character in UTF-8 stands there: truncated, overlong, half a surrogate pair or beyond Unicode.
std::optional<Decoded> decode(std::string_view text) {
    const auto lead = static_cast<unsigned char>(text[0]);
    if (lead < 0x80) return Decoded{lead, 1};
    const std::size_t count = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    if (lead < 0xC0 || lead >= 0xF8 || text.size() < count) return std::nullopt;
    char32_t codePoint = lead & (0xFFU >> (count + 1));
    for (const char byte : text.substr(1, count - 1)) {
        if ((byte & 0xC0) != 0x80) return std::nullopt;
        codePoint = codePoint << 6 | (static_cast<unsigned char>(byte) & 0x3FU);
    }
    const bool isHalfAPair = isHighSurrogate(codePoint) || isLowSurrogate(codePoint);
    if (codePoint > 0x10FFFF || isHalfAPair || utf8(codePoint).size() != count) return std::nullopt;
    return Decoded{codePoint, count};
}

}  // namespace

Character characterAt(std::u16string_view text, std::size_t position) {
    const char32_t unit = text[position];
    if (isHighSurrogate(unit) && position + 1 < text.size() && isLowSurrogate(text[position + 1])) {
        return {0x10000 + ((unit - 0xD800) << 10) + (text[position + 1] - char32_t{0xDC00}), 2, false};
    }
    return {unit, 1, isHighSurrogate(unit) || isLowSurrogate(unit)};
}

std::string utf8(char32_t codePoint) {
    const auto continuation = [codePoint](unsigned shift) {
        return static_cast<char>(0x80 | (codePoint >> shift & 0x3F));
    };
    if (codePoint < 0x80) return {static_cast<char>(codePoint)};
    if (codePoint < 0x800) return {static_cast<char>(0xC0 | codePoint >> 6), continuation(0)};
    if (codePoint < 0x10000) return {static_cast<char>(0xE0 | codePoint >> 12), continuation(6), continuation(0)};
    return {static_cast<char>(0xF0 | codePoint >> 18), continuation(12), continuation(6), continuation(0)};
}

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
    std::u16string text;
    while (!bytes.empty()) {
        const std::optional<Decoded> character = decode(bytes);
        if (!character) return std::nullopt;
        const char32_t codePoint = character->codePoint;
        if (codePoint >= 0x10000) {
            text += static_cast<char16_t>(0xD800 + ((codePoint - 0x10000) >> 10));
            text += static_cast<char16_t>(0xDC00 + ((codePoint - 0x10000) & 0x3FF));
        } else {
            text += static_cast<char16_t>(codePoint);
        }
        bytes.remove_prefix(character->bytes);
    }
    return text;
}

}  // namespace recordingFakes
