// Content codings of HTTP bodies.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace platform {

enum class ContentCoding { gzip, deflate };

// The coding that the value of a Content-Encoding field names, in any case. Absent for every other coding and for
// several of them at once.
[[nodiscard]] std::optional<ContentCoding> contentCodingNamed(std::string_view value);

// `bytes` as they were before `coding` was applied; absent when they are broken or cut short. Safe from any thread.
[[nodiscard]] std::optional<std::string> decoded(ContentCoding coding, std::string_view bytes);

}  // namespace platform
