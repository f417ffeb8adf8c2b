#include "hardware/hardware_detector.h"
#include "platform/process.h"
#include "platform/text.h"

std::optional<std::string> HardwareDetector::runCommand(const std::string& path,
                                                        const std::vector<std::string>& arguments) {
    const std::optional<std::string> output = platform::standardOutputOf(path, arguments);
    return output ? platform::textFromUtf8(*output) : std::nullopt;
}
