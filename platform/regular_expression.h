// Regular expressions.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace platform {

// Compiled once; may be used by several threads at once.
class RegularExpression {
  public:
    // `pattern` is in ICU's syntax: "." stops at every line break that text.h lists, "\s" matches these and all white
    // space, and the search is case-sensitive.
    explicit RegularExpression(std::string_view pattern);

    // The first match in `text`, whole (label and group together); absent when there is none. `text` must be
    // well-formed UTF-8.
    [[nodiscard]] std::optional<std::string> firstMatchIn(std::string_view text) const;

  private:
    struct Compiled;
    std::shared_ptr<const Compiled> compiled_;
};

}  // namespace platform
