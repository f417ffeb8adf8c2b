// UTF-8 without the product's libraries, to check them.
#pragma once

#include <optional>
#include <string>

namespace testSupport {

// Absent if the bytes are no valid UTF-8: truncated, overlong, a surrogate or beyond U+10FFFF.
[[nodiscard]] std::optional<std::u32string> decoded(const std::string& bytes);

[[nodiscard]] std::string encoded(const std::u32string& text);

}  // namespace testSupport
