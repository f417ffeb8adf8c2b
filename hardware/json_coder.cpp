#include "hardware/json_coder.h"

using platform::JsonValue;

std::optional<CodingError> JsonEncoder::Container::encode(std::string_view key, const std::string& text) {
    object_->add(std::string(key), text);
    return std::nullopt;
}

std::optional<CodingError> JsonEncoder::Container::encode(std::string_view key, std::int64_t integer) {
    object_->add(std::string(key), JsonValue::Content(integer));
    return std::nullopt;
}

std::variant<JsonDecoder::Container, CodingError> JsonDecoder::container() const {
    const auto* object = std::get_if<platform::JsonObject>(&value_->content());
    if (object == nullptr) return CodingError{CodingError::Kind::typeMismatch, ""};
    return Container(*object);
}

std::variant<const JsonValue*, CodingError> JsonDecoder::Container::valueOf(std::string_view key) const {
    const JsonValue* value = object_->find(key);
    if (value == nullptr) return CodingError{CodingError::Kind::keyNotFound, std::string(key)};
    if (std::holds_alternative<std::nullptr_t>(value->content())) {
        return CodingError{CodingError::Kind::valueNotFound, std::string(key)};
    }
    return value;
}

std::variant<std::string, CodingError> JsonDecoder::Container::text(std::string_view key) const {
    const auto value = valueOf(key);
    if (const auto* error = std::get_if<CodingError>(&value)) return *error;
    const std::string* text = std::get<const JsonValue*>(value)->asString();
    if (text == nullptr) return CodingError{CodingError::Kind::typeMismatch, std::string(key)};
    return *text;
}

std::variant<std::int64_t, CodingError> JsonDecoder::Container::integer(std::string_view key) const {
    const auto value = valueOf(key);
    if (const auto* error = std::get_if<CodingError>(&value)) return *error;
    const JsonValue& present = *std::get<const JsonValue*>(value);
    const std::optional<std::int64_t> integer = present.asInteger();
    if (!integer || std::holds_alternative<bool>(present.content())) {
        return CodingError{CodingError::Kind::typeMismatch, std::string(key)};
    }
    return *integer;
}
