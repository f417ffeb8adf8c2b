// UTF-8 without any library, for whoever has to know better than the one that the product uses.
#pragma once

#include <optional>
#include <string>

namespace testSupport {

// Absent when the bytes are no UTF-8: cut short, overlong, half a surrogate pair or beyond Unicode.
[[nodiscard]] std::optional<std::u32string> decoded(const std::string& bytes);

[[nodiscard]] std::string encoded(const std::u32string& text);

}  // namespace testSupport
