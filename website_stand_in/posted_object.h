// The JSON object that was posted to an endpoint, which must have the members asked for and no others.
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

    // The member's value. One that is missing or of another type gives an empty text or 0 and is complained of. An
    // integer is a number written as one: 16.0 and true are none.
    [[nodiscard]] std::string text(std::string_view name);
    [[nodiscard]] std::int64_t integer(std::string_view name);

    // A sentence about the first thing wrong, absent when all is well. To be called last: a member that was not asked
    // for is wrong, and so is a second one of the same name.
    [[nodiscard]] std::optional<std::string> complaint() const;

  private:
    template <typename Value>
    Value valueOf(std::string_view name, std::string_view kind);

    platform::JsonObject object_;
    std::vector<std::string_view> askedFor_;
    std::optional<std::string> complaint_;
};

}  // namespace websiteStandIn
