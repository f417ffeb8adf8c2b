// Finds the characters for which a predicate is true, and lists white space and line breaks.
#pragma once

#include <set>
#include <string>

#include "tests/support/utf8.h"

namespace contractTest {

// Tries each character of the Basic Multilingual Plane, and beyond it, where no white space is, one of 257.
template <typename Matches>
std::set<char32_t> charactersThat(Matches matches) {
    std::set<char32_t> found;
    for (char32_t character = 0; character <= 0x10FFFF; character += character < 0x10000 ? 1 : 257) {
        const bool isSurrogate = character >= 0xD800 && character <= 0xDFFF;
        if (!isSurrogate && matches(testSupport::encoded({character}))) found.insert(character);
    }
    return found;
}

inline const std::set<char32_t> whitespace = {0x09,   0x20,   0xA0,   0x1680, 0x2000, 0x2001, 0x2002, 0x2003, 0x2004,
                                              0x2005, 0x2006, 0x2007, 0x2008, 0x2009, 0x200A, 0x202F, 0x205F, 0x3000};
inline const std::set<char32_t> newlines = {0x0A, 0x0B, 0x0C, 0x0D, 0x85, 0x2028, 0x2029};

inline std::set<char32_t> whitespaceAndNewlines() {
    std::set<char32_t> all = whitespace;
    all.insert(newlines.begin(), newlines.end());
    return all;
}

}  // namespace contractTest
