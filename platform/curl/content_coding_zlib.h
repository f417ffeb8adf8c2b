// Content codings of HTTP bodies.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace platform {

enum class ContentCoding { gzip, deflate };

// The coding that the value of a Content-Encoding field names, in any case. Absent for every other coding and for
// several of them at once.
[[nodiscard]] std::optional<ContentCoding> contentCodingNamed(std::string_view value);

enum class DecodingFailure {
    broken,    // or cut short
    tooLarge,  // decoded, more than asked for
};

// `bytes` as they were before `coding` was applied, `most` of them at most. Takes no more memory than the result, and
// none for a failure. Safe from any thread.
[[nodiscard]] std::variant<std::string, DecodingFailure> decoded(ContentCoding coding, std::string_view bytes,
                                                                 std::size_t most);

}  // namespace platform
