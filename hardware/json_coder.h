// Keyed coders that write a record as a JSON object and read one from it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "platform/json.h"

struct CodingError {
    enum class Kind { keyNotFound, valueNotFound, typeMismatch };

    Kind kind;
    std::string key;  // Empty when it is the whole value that is no object.

    bool operator==(const CodingError&) const = default;
};

// Collects the members in the order of writing; never fails.
class JsonEncoder {
  public:
    using Error = CodingError;

    class Container {
      public:
        explicit Container(platform::JsonObject& object) : object_(&object) {}

        std::optional<Error> encode(std::string_view key, const std::string& text);
        std::optional<Error> encode(std::string_view key, std::int64_t integer);

      private:
        platform::JsonObject* object_;
    };

    [[nodiscard]] std::variant<Container, Error> container() { return Container(object_); }
    [[nodiscard]] const platform::JsonObject& object() const { return object_; }

  private:
    platform::JsonObject object_;
};

// Text and numbers are not converted into each other, nor a boolean into a number. A number without a fraction (16.0)
// is an integer.
class JsonDecoder {
  public:
    using Error = CodingError;

    class Container {
      public:
        explicit Container(const platform::JsonObject& object) : object_(&object) {}

        [[nodiscard]] std::variant<std::string, Error> text(std::string_view key) const;
        [[nodiscard]] std::variant<std::int64_t, Error> integer(std::string_view key) const;

      private:
        [[nodiscard]] std::variant<const platform::JsonValue*, Error> valueOf(std::string_view key) const;

        const platform::JsonObject* object_;
    };

    explicit JsonDecoder(const platform::JsonValue& value) : value_(&value) {}  // Must outlive the decoder.

    [[nodiscard]] std::variant<Container, Error> container() const;

  private:
    const platform::JsonValue* value_;
};
