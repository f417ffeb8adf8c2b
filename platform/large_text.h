// Long texts that come in pieces.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace platform {

// Appends `piece` to a text that will have `longest` bytes at most. A string that grows by doubling would for a while
// take three times its size; memory that is reserved but never written to is not used up.
inline void appendPiece(std::string& text, std::string_view piece, std::size_t longest) {
    constexpr std::size_t small = std::size_t{1} << 20;
    if (text.size() + piece.size() > small) text.reserve(longest);
    text.append(piece);
}

}  // namespace platform
