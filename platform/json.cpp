// The value's own rules; reading and writing bytes is the back end's: boost/json_boost.cpp.
#include "platform/json.h"

#include <algorithm>
#include <cmath>

namespace platform {

namespace {

// The first doubles that may stand for a number outside of 64 bits, and no longer count as integers: the lower one is
// also what -9223372036854775809 becomes.
constexpr double belowIntegers = -9223372036854775808.0;
constexpr double beyondIntegers = 9223372036854775808.0;

}  // namespace

const JsonValue* JsonObject::find(std::string_view key) const {
    const auto member = std::find_if(members_.begin(), members_.end(), [key](const auto& m) { return m.first == key; });
    return member == members_.end() ? nullptr : &member->second;
}

std::optional<std::string> JsonObject::takeString(std::string_view key) {
    const JsonValue* member = find(key);
    const std::string* text = member != nullptr ? member->asString() : nullptr;
    if (text == nullptr) return std::nullopt;
    return std::move(const_cast<std::string&>(*text));  // The object's own, and it may be changed here.
}

std::optional<bool> JsonValue::asBool() const {
    if (const auto* boolean = std::get_if<bool>(&content_)) return *boolean;
    const std::optional<std::int64_t> integer = asInteger();
    if (integer == 0) return false;
    if (integer == 1) return true;
    return std::nullopt;
}

std::optional<std::int64_t> JsonValue::asInteger() const {
    if (const auto* boolean = std::get_if<bool>(&content_)) return *boolean ? 1 : 0;
    if (const auto* integer = std::get_if<std::int64_t>(&content_)) return *integer;
    const auto* number = std::get_if<double>(&content_);
    if (number == nullptr || std::trunc(*number) != *number) return std::nullopt;
    if (*number <= belowIntegers || *number >= beyondIntegers) return std::nullopt;
    return static_cast<std::int64_t>(*number);
}

const std::string* JsonValue::asString() const { return std::get_if<std::string>(&content_); }

}  // namespace platform
