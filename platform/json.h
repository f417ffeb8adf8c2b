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

// An array or an object within the outermost one. Its content is checked when it is read, but not kept.
struct JsonContainer {};

class JsonValue {
  public:
    // A number is an int64_t when it was written as an integer within 64 bits, and a double otherwise.
    using Content = std::variant<std::nullptr_t, bool, std::int64_t, double, std::string, JsonContainer>;

    JsonValue(Content content) : content_(std::move(content)) {}
    JsonValue(std::int64_t number) : content_(number) {}
    JsonValue(std::string text) : content_(std::move(text)) {}
    JsonValue(const char* text) : content_(std::string(text)) {}

    [[nodiscard]] const Content& content() const { return content_; }

    // What the value converts to, by the rules with which macOS bridges a parsed number: true and false are also 1 and
    // 0, the numbers 0 and 1 are also false and true, and a number without a fraction (42.0, 1e3) is also an integer.
    // A string converts to nothing but itself.
    [[nodiscard]] std::optional<bool> asBool() const;
    [[nodiscard]] std::optional<std::int64_t> asInteger() const;
    [[nodiscard]] const std::string* asString() const;

  private:
    Content content_;
};

// Members in the order in which they were written or read.
class JsonObject {
  public:
    JsonObject() = default;
    JsonObject(std::initializer_list<std::pair<std::string, JsonValue>> members) : members_(members) {}

    // The member's value, the first one's if a website repeats a name; null when there is none. Valid until the object
    // changes.
    [[nodiscard]] const JsonValue* find(std::string_view key) const;

    // The member's text, moved out of the object; absent when there is no such member or it is no string.
    [[nodiscard]] std::optional<std::string> takeString(std::string_view key);

    void add(std::string key, JsonValue value) { members_.emplace_back(std::move(key), std::move(value)); }

    [[nodiscard]] const std::vector<std::pair<std::string, JsonValue>>& members() const { return members_; }

  private:
    std::vector<std::pair<std::string, JsonValue>> members_;
};

// The object as compact JSON in UTF-8, members in their order. Absent when a text in it is not well-formed UTF-8, a
// number is not finite or a member is a container: none of these can be written.
[[nodiscard]] std::optional<std::string> jsonDataFrom(const JsonObject& object);

// The object that the bytes are as one JSON text: RFC 8259, one trailing comma allowed in each array and object, 512
// levels at most, in UTF-8, UTF-16 or UTF-32 with or without byte order mark. Absent when they are not that, when a
// number is too large for a double, or when the outermost value is no object.
//
// With `keys`, only the first member of each of these names is kept, so that an answer of any shape takes little
// memory.
[[nodiscard]] std::optional<JsonObject> jsonObjectFrom(std::string_view bytes,
                                                       std::span<const std::string_view> keys = {});

}  // namespace platform
