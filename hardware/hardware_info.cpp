#include "hardware/hardware_info.h"

#include <optional>
#include <string_view>
#include <utility>

using platform::JsonObject;
using platform::JsonValue;

namespace {

// Reads one member after another, and nothing more after the first error.
class MemberReader {
  public:
    explicit MemberReader(const JsonObject& object) : object_(object) {}

    std::string text(std::string_view key) {
        const JsonValue* value = valueOf(key);
        const std::string* text = value != nullptr ? value->asString() : nullptr;
        if (value != nullptr && text == nullptr) fail(CodingError::Kind::typeMismatch, key);
        return text != nullptr ? *text : std::string();
    }

    std::int64_t integer(std::string_view key) {
        const JsonValue* value = valueOf(key);
        if (value == nullptr) return 0;
        const std::optional<std::int64_t> integer = value->asInteger();
        if (!integer || std::holds_alternative<bool>(value->content())) fail(CodingError::Kind::typeMismatch, key);
        return integer.value_or(0);
    }

    [[nodiscard]] const std::optional<CodingError>& error() const { return error_; }

  private:
    // Null when there is none, or after an error.
    const JsonValue* valueOf(std::string_view key) {
        if (error_) return nullptr;
        const JsonValue* value = object_.find(key);
        if (value == nullptr) {
            fail(CodingError::Kind::keyNotFound, key);
        } else if (std::holds_alternative<std::nullptr_t>(value->content())) {
            fail(CodingError::Kind::valueNotFound, key);
        }
        return error_ ? nullptr : value;
    }

    void fail(CodingError::Kind kind, std::string_view key) { error_ = CodingError{kind, std::string(key)}; }

    const JsonObject& object_;
    std::optional<CodingError> error_;
};

}  // namespace

HardwareInfo::HardwareInfo(std::string os_, std::string processor_, std::string graphicsCard_, std::int64_t ramGB_,
                           std::string ramType_, std::int64_t ramFrequency_, std::int64_t storageGB_,
                           std::string storageType_, std::string directxVersion_, std::int64_t gpuMemory_)
    : os(std::move(os_)),
      processor(std::move(processor_)),
      graphicsCard(std::move(graphicsCard_)),
      ramGB(ramGB_),
      ramType(std::move(ramType_)),
      ramFrequency(ramFrequency_),
      storageGB(storageGB_),
      storageType(std::move(storageType_)),
      directxVersion(std::move(directxVersion_)),
      gpuMemory(gpuMemory_) {}

JsonObject jsonObjectOf(const HardwareInfo& info) {
    return {
        {"os", info.os},
        {"processor", info.processor},
        {"graphicsCard", info.graphicsCard},
        {"ramGB", info.ramGB},
        {"ramType", info.ramType},
        {"ramFrequency", info.ramFrequency},
        {"storageGB", info.storageGB},
        {"storageType", info.storageType},
        {"directxVersion", info.directxVersion},
        {"gpuMemory", info.gpuMemory},
    };
}

std::variant<HardwareInfo, CodingError> hardwareInfoFrom(const JsonObject& object) {
    MemberReader read(object);
    // Braces, because they alone promise to read from left to right.
    HardwareInfo info{read.text("os"),           read.text("processor"),   read.text("graphicsCard"),
                      read.integer("ramGB"),     read.text("ramType"),     read.integer("ramFrequency"),
                      read.integer("storageGB"), read.text("storageType"), read.text("directxVersion"),
                      read.integer("gpuMemory")};
    if (read.error()) return *read.error();
    return info;
}
