// JSON, as a value of the language and as bytes.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace platform {

class JsonValue;

using JsonArray = std::vector<JsonValue>;

// Members in the order in which they were written or read.
class JsonObject {
  public:
    JsonObject() = default;
    JsonObject(std::initializer_list<std::pair<std::string, JsonValue>> members);

    // The member's value, the first one's if a website repeats a name; null when there is none. Valid until the object
    // changes.
    [[nodiscard]] const JsonValue* find(std::string_view key) const;

    void add(std::string key, JsonValue value);

    [[nodiscard]] const std::vector<std::pair<std::string, JsonValue>>& members() const { return members_; }

  private:
    std::vector<std::pair<std::string, JsonValue>> members_;
};

class JsonValue {
  public:
    // A number is an int64_t when it was written as an integer within 64 bits, and a double otherwise.
    using Content = std::variant<std::nullptr_t, bool, std::int64_t, double, std::string, JsonArray, JsonObject>;

    JsonValue(Content content) : content_(std::move(content)) {}
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

// The object as compact JSON in UTF-8, members in their order. Absent when a text in it is not well-formed UTF-8 or a
// number is not finite: JSON has no way to write either.
[[nodiscard]] std::optional<std::string> jsonDataFrom(const JsonObject& object);

// The bytes read as one JSON text: RFC 8259, one trailing comma allowed in each array and object, 512 levels at most,
// in UTF-8, UTF-16 or UTF-32 with or without byte order mark. Absent when they are not that, when a number is too large
// for a double, or when the outermost value is neither object nor array.
[[nodiscard]] std::optional<JsonValue> jsonValueFrom(std::string_view bytes);

// The same, when the outermost value is an object.
[[nodiscard]] std::optional<JsonObject> jsonObjectFrom(std::string_view bytes);

}  // namespace platform
