// The record that describes the computer's hardware.
#pragma once

#include <cstdint>
#include <string>

#include "platform/json.h"

// Nothing is checked: texts may be empty, numbers may have any value.
struct HardwareInfo {
    HardwareInfo(std::string os, std::string processor, std::string graphicsCard, std::int64_t ramGB,
                 std::string ramType, std::int64_t ramFrequency, std::int64_t storageGB, std::string storageType,
                 std::string directxVersion, std::int64_t gpuMemory);

    std::string os;            // Name of the operating system, without version.
    std::string processor;     // Name.
    std::string graphicsCard;  // Name of the first graphics card.
    std::int64_t ramGB;        // Installed memory in units of 2^30 bytes, rounded toward zero.
    std::string ramType;
    std::int64_t ramFrequency;  // The figure on the label of the memory; no unit.
    std::int64_t storageGB;     // Size of the root volume as df prints it.
    std::string storageType;
    std::string directxVersion;
    std::int64_t gpuMemory;  // In gigabytes.
};

// The ten fields, in the order above and under their own names.
[[nodiscard]] platform::JsonObject jsonObjectOf(const HardwareInfo& info);

// Why a JSON object is not a record.
struct CodingError {
    enum class Kind { keyNotFound, valueNotFound, typeMismatch };  // valueNotFound: it is null.

    Kind kind;
    std::string key;

    bool operator==(const CodingError&) const = default;
};

// The record of the ten members. Throws the first CodingError in the order of the fields. Text and numbers are not
// converted into each other, nor a boolean into a number; a number without a fraction (16.0) is an integer. Other
// members are ignored.
[[nodiscard]] HardwareInfo hardwareInfoFrom(const platform::JsonObject& object);
