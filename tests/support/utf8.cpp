#include "tests/support/utf8.h"

namespace testSupport {

std::optional<std::u32string> decoded(const std::string& bytes) {
    std::u32string text;
    for (std::size_t at = 0; at < bytes.size();) {
        const auto lead = static_cast<unsigned char>(bytes[at]);
        const std::size_t length = lead < 0x80                   ? 1
                                   : lead >= 0xC2 && lead < 0xE0 ? 2
                                   : lead >= 0xE0 && lead < 0xF0 ? 3
                                   : lead >= 0xF0 && lead < 0xF5 ? 4
                                                                 : 0;
        if (length == 0 || at + length > bytes.size()) return std::nullopt;
        char32_t point = length == 1 ? lead : lead & (0x7FU >> length);
        for (std::size_t more = 1; more < length; ++more) {
            const auto byte = static_cast<unsigned char>(bytes[at + more]);
            if ((byte & 0xC0U) != 0x80) return std::nullopt;
            point = (point << 6U) | (byte & 0x3FU);
        }
        const bool isOverlong = (length == 3 && point < 0x800) || (length == 4 && point < 0x10000);
        const bool isSurrogate = point >= 0xD800 && point < 0xE000;
        if (isOverlong || isSurrogate || point > 0x10FFFF) return std::nullopt;
        text += point;
        at += length;
    }
    return text;
}

std::string encoded(const std::u32string& text) {
    std::string bytes;
    const auto add = [&bytes](char32_t byte) { bytes += static_cast<char>(static_cast<unsigned char>(byte)); };
    for (const char32_t point : text) {
        if (point < 0x80) {
            add(point);
        } else if (point < 0x800) {
            add(0xC0 | point >> 6U);
            add(0x80 | (point & 0x3F));
        } else if (point < 0x10000) {
            add(0xE0 | point >> 12U);
            add(0x80 | (point >> 6U & 0x3F));
            add(0x80 | (point & 0x3F));
        } else {
            add(0xF0 | point >> 18U);
            add(0x80 | (point >> 12U & 0x3F));
            add(0x80 | (point >> 6U & 0x3F));
            add(0x80 | (point & 0x3F));
        }
    }
    return bytes;
}

}  // namespace testSupport
