// Checks a JSON object posted to an endpoint: it must have the members asked for and no others.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/json.h"

namespace websiteStandIn {

class PostedObject {
  public:
    explicit PostedObject(platform::JsonObject object) : object_(std::move(object)) {}

    // The member's value. If it is missing or has another type, the result is empty or 0, and complaint() reports
    // it. 16.0 and true are no integers.
    [[nodiscard]] std::string text(std::string_view name);
    [[nodiscard]] std::int64_t integer(std::string_view name);

    // A sentence about the first error; absent if there is none. Call it last: members that were not asked for and
    // repeated members are errors.
    [[nodiscard]] std::optional<std::string> complaint() const;

  private:
    template <typename Value>
    Value valueOf(std::string_view name, std::string_view kind);

    platform::JsonObject object_;
    std::vector<std::string_view> askedFor_;
    std::optional<std::string> complaint_;
};

}  // namespace websiteStandIn
