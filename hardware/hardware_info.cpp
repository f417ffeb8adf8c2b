#include "hardware/hardware_info.h"

#include <optional>
#include <utility>
#include <variant>

using platform::JsonObject;
using platform::JsonValue;

namespace {

const JsonValue& valueIn(const JsonObject& object, const char* key) {
    const JsonValue* value = object.find(key);
    if (value == nullptr) throw CodingError{CodingError::Kind::keyNotFound, key};
    if (std::holds_alternative<std::nullptr_t>(*value)) throw CodingError{CodingError::Kind::valueNotFound, key};
    return *value;
}

std::string textIn(const JsonObject& object, const char* key) {
    const auto* text = std::get_if<std::string>(&valueIn(object, key));
    if (text == nullptr) throw CodingError{CodingError::Kind::typeMismatch, key};
    return *text;
}

std::int64_t integerIn(const JsonObject& object, const char* key) {
    const bool isBoolean = std::holds_alternative<bool>(valueIn(object, key));
    const std::optional<std::int64_t> integer = object.integer(key);
    if (!integer || isBoolean) throw CodingError{CodingError::Kind::typeMismatch, key};
    return *integer;
}

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

HardwareInfo hardwareInfoFrom(const JsonObject& object) {
    // Braces, because they evaluate their arguments from left to right.
    return HardwareInfo{
        textIn(object, "os"),           textIn(object, "processor"),   textIn(object, "graphicsCard"),
        integerIn(object, "ramGB"),     textIn(object, "ramType"),     integerIn(object, "ramFrequency"),
        integerIn(object, "storageGB"), textIn(object, "storageType"), textIn(object, "directxVersion"),
        integerIn(object, "gpuMemory")};
}
