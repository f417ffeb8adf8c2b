// All characters of Unicode, and those among them that are white space or line breaks here.
#pragma once

#include <set>
#include <string>

namespace contractTest {

inline std::string utf8(char32_t character) {
    const auto byte = [](char32_t value) { return static_cast<char>(static_cast<unsigned char>(value)); };
    if (character < 0x80) return {byte(character)};
    if (character < 0x800) return {byte(0xC0 | (character >> 6)), byte(0x80 | (character & 0x3F))};
    if (character < 0x10000) {
        return {byte(0xE0 | (character >> 12)), byte(0x80 | ((character >> 6) & 0x3F)),
                byte(0x80 | (character & 0x3F))};
    }
    return {byte(0xF0 | (character >> 18)), byte(0x80 | ((character >> 12) & 0x3F)),
            byte(0x80 | ((character >> 6) & 0x3F)), byte(0x80 | (character & 0x3F))};
}

template <typename Matches>
std::set<char32_t> charactersThat(Matches matches) {
    std::set<char32_t> found;
    for (char32_t character = 0; character <= 0x10FFFF; ++character) {
        if (character < 0xD800 || character > 0xDFFF) {
            if (matches(utf8(character))) found.insert(character);
        }
    }
    return found;
}

inline const std::set<char32_t> whitespace = {0x09,   0x20,   0xA0,   0x1680, 0x2000, 0x2001, 0x2002, 0x2003, 0x2004,
                                              0x2005, 0x2006, 0x2007, 0x2008, 0x2009, 0x200A, 0x202F, 0x205F, 0x3000};
inline const std::set<char32_t> newlines = {0x0A, 0x0B, 0x0C, 0x0D, 0x85, 0x2028, 0x2029};

inline std::set<char32_t> both() {
    std::set<char32_t> all = whitespace;
    all.insert(newlines.begin(), newlines.end());
    return all;
}

}  // namespace contractTest
