// What a client sent.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace testSupport {

// What one connection sent up to the end of its request: header, blank line and as much body as its Content-Length
// says. Bytes that don't begin as a request does (a TLS greeting, say) count as a whole one as soon as they arrive.
struct RecordedRequest {
    std::string bytes;

    [[nodiscard]] bool isWhole() const;
    [[nodiscard]] std::string requestLine() const;  // Without its line break.
    [[nodiscard]] std::string method() const;
    [[nodiscard]] std::string target() const;
    [[nodiscard]] std::vector<std::string> valuesOf(std::string_view fieldName) const;  // Its name in any case.
    [[nodiscard]] std::string body() const;
};

}  // namespace testSupport
