// URLs as a person or a website writes them.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace platform {

// A URL reference by RFC 3986, kept byte for byte. It may not be loadable: "path" and "localhost:8080/x" are URLs too.
class Url {
  public:
    // Absent when `text` is empty or breaks the grammar: a blank, a control or non-ASCII character, a "%" without two
    // hexadecimal digits, a scheme that begins with a digit, anything behind a host but a port of digits (which may be
    // of any size, or none), a second "@" before it, an IPv6 address with a zone.
    [[nodiscard]] static std::optional<Url> parse(std::string text);

    [[nodiscard]] const std::string& absoluteString() const { return text_; }

    // In lower case; empty for a relative reference.
    [[nodiscard]] const std::string& scheme() const { return scheme_; }

    // The host as written; empty when there is none.
    [[nodiscard]] const std::string& host() const { return host_; }

  private:
    Url(std::string text, std::string scheme, std::string host)
        : text_(std::move(text)), scheme_(std::move(scheme)), host_(std::move(host)) {}

    std::string text_;
    std::string scheme_;
    std::string host_;
};

}  // namespace platform
