#include <cstdint>
#include <string_view>

#include "hardware/hardware_detector.h"
#include "platform/regular_expression.h"
#include "platform/text.h"

using platform::RegularExpression;

namespace {

constexpr std::int64_t bytesPerGigabyte = std::int64_t{1} << 30;

// The values of fields that no command determines.
HardwareInfo startingValues() {
    return HardwareInfo(/*os=*/"macOS", /*processor=*/"Unknown", /*graphicsCard=*/"Unknown", /*ramGB=*/8,
                        /*ramType=*/"DDR4", /*ramFrequency=*/2666, /*storageGB=*/512, /*storageType=*/"SSD",
                        /*directxVersion=*/"Not Applicable", /*gpuMemory=*/4);
}

// The text after the last colon of the first match, so a value that contains colons loses its beginning.
std::optional<std::string> labelledValue(const RegularExpression& pattern, const std::string& overview) {
    const std::optional<std::string> match = pattern.firstMatchIn(overview);
    if (!match) return std::nullopt;
    return std::string(platform::trimmedOfWhitespace(platform::piecesOf(*match, ':').back()));
}

// For Apple's chips the brand string names only the family; the overview names the chip.
bool asksForTheChip(const std::string& processor) {
    return processor.empty() || processor.find("Apple") != std::string::npos;
}

std::optional<std::string> chipFrom(const std::string& overview) {
    static const RegularExpression chip("Chip:\\s*(.+)");
    return labelledValue(chip, overview);
}

std::optional<std::int64_t> ramGBFrom(const std::string& memorySize) {
    const std::optional<std::int64_t> bytes =
        platform::integerFrom(platform::trimmedOfWhitespaceAndNewlines(memorySize));
    if (!bytes) return std::nullopt;
    return *bytes / bytesPerGigabyte;
}

std::optional<std::string> graphicsCardFrom(const std::string& overview) {
    static const RegularExpression chipsetModel("Chipset Model:\\s*(.+)");
    static const RegularExpression model("Model:\\s*(.+)");
    if (auto value = labelledValue(chipsetModel, overview)) return value;
    return labelledValue(model, overview);
}

// The size column of the line below the header, if it is a whole number with or without "G": not "466Gi", "1.8T" or
// "2.0G".
std::optional<std::int64_t> storageGBFrom(const std::string& diskUsage) {
    const std::vector<std::string_view> lines = platform::piecesOf(diskUsage, '\n');
    if (lines.size() < 2) return std::nullopt;
    const std::vector<std::string_view> columns = platform::columnsOf(lines[1]);
    if (columns.size() < 2) return std::nullopt;
    std::string size(columns[1]);
    std::erase(size, 'G');
    return platform::integerFrom(size);
}

}  // namespace

HardwareInfo HardwareDetector::detect() {
    HardwareInfo info = startingValues();

    if (const auto brandString = runCommand("/usr/sbin/sysctl", {"-n", "machdep.cpu.brand_string"})) {
        info.processor = platform::trimmedOfWhitespaceAndNewlines(*brandString);
    }
    if (asksForTheChip(info.processor)) {
        const auto overview = runCommand("/usr/sbin/system_profiler", {"SPHardwareDataType"});
        if (const auto chip = overview ? chipFrom(*overview) : std::nullopt) info.processor = *chip;
    }
    if (const auto memorySize = runCommand("/usr/sbin/sysctl", {"-n", "hw.memsize"})) {
        info.ramGB = ramGBFrom(*memorySize).value_or(info.ramGB);
    }
    if (const auto overview = runCommand("/usr/sbin/system_profiler", {"SPDisplaysDataType"})) {
        info.graphicsCard = graphicsCardFrom(*overview).value_or(info.graphicsCard);
    }
    if (const auto diskUsage = runCommand("/bin/df", {"-h", "/"})) {
        info.storageGB = storageGBFrom(*diskUsage).value_or(info.storageGB);
    }
    return info;
}
