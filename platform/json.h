// JSON objects, as values of the language and as bytes.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace platform {

// An array or an object inside the outermost one. Its content is checked, but not kept.
struct JsonContainer {};

// A number is an int64_t if it was written as an integer within 64 bits, else the nearest double.
using JsonValue = std::variant<std::nullptr_t, bool, std::int64_t, double, std::string, JsonContainer>;

// Members in the order in which they were written or read.
class JsonObject {
  public:
    JsonObject() = default;
    JsonObject(std::initializer_list<std::pair<std::string, JsonValue>> members) : members_(members) {}

    // The first member of that name; null when there is none. Valid until the object changes.
    [[nodiscard]] const JsonValue* find(std::string_view key) const;

    // The member, converted by the rules of macOS for parsed numbers: true and false also read as 1 and 0, and 1
    // and 0 as true and false; a number without a fraction (42.0, 1e3) is also an integer. Absent when there is no such
    // member.
    [[nodiscard]] std::optional<bool> boolean(std::string_view key) const;
    [[nodiscard]] std::optional<std::int64_t> integer(std::string_view key) const;

    // The member's text, moved out of the object; absent when there is no such member or it is no string.
    [[nodiscard]] std::optional<std::string> takeString(std::string_view key);

    void add(std::string key, JsonValue value) { members_.emplace_back(std::move(key), std::move(value)); }

    [[nodiscard]] const std::vector<std::pair<std::string, JsonValue>>& members() const { return members_; }

  private:
    std::vector<std::pair<std::string, JsonValue>> members_;
};

// The object as compact JSON in UTF-8, members in their order. Absent when a text is not UTF-8, a number is not finite
// or a member is a container.
[[nodiscard]] std::optional<std::string> jsonDataFrom(const JsonObject& object);

// The object in a JSON text: RFC 8259 with trailing commas, 512 levels at most, in UTF-8, UTF-16 or UTF-32 with or
// without byte order mark. Absent when the bytes are no such text, a number is too large for a double, or the outermost
// value is no object. With `keys`, only the first member of each of these names is kept, to save memory.
[[nodiscard]] std::optional<JsonObject> jsonObjectFrom(std::string_view bytes,
                                                       std::span<const std::string_view> keys = {});

}  // namespace platform
