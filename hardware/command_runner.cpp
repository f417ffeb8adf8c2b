#include "hardware/hardware_detector.h"
#include "platform/process.h"
#include "platform/text.h"

std::optional<std::string> HardwareDetector::runCommand(const std::string& path,
                                                        const std::vector<std::string>& arguments) {
    std::optional<std::string> output = platform::standardOutputOf(path, arguments);
    if (output && !platform::isUtf8(*output)) output.reset();
    return output;
}
