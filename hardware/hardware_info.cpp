#include "hardware/hardware_info.h"

namespace {

constexpr std::array<std::string_view, 10> keyTexts = {
    "os",           "processor", "graphicsCard", "ramGB",          "ramType",
    "ramFrequency", "storageGB", "storageType",  "directxVersion", "gpuMemory"};

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

std::string_view HardwareInfo::textOf(CodingKeys key) { return keyTexts[static_cast<std::size_t>(key)]; }

std::optional<std::int64_t> HardwareInfo::integerOf(CodingKeys) { return std::nullopt; }

std::optional<HardwareInfo::CodingKeys> HardwareInfo::keyFromText(std::string_view text) {
    for (std::size_t index = 0; index < keyTexts.size(); ++index) {
        if (keyTexts[index] == text) return static_cast<CodingKeys>(index);
    }
    return std::nullopt;
}

std::optional<HardwareInfo::CodingKeys> HardwareInfo::keyFromInteger(std::int64_t) { return std::nullopt; }
