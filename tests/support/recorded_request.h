// A request as a client sent it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace testSupport {

// The bytes of one connection up to the end of its request: header, blank line and a body of Content-Length bytes.
// Bytes that don't start with an upper-case letter, such as a TLS handshake, count as a whole request at once.
struct RecordedRequest {
    std::string bytes;

    [[nodiscard]] bool isWhole() const;
    [[nodiscard]] std::string requestLine() const;  // Without its line break.
    [[nodiscard]] std::string method() const;
    [[nodiscard]] std::string target() const;
    [[nodiscard]] std::vector<std::string> valuesOf(std::string_view fieldName) const;  // Case-insensitive.
    [[nodiscard]] std::string body() const;
};

}  // namespace testSupport
