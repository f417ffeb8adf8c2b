// Sends a record to the address given, twice, and tells on standard error what the second time took: milliseconds, and
// the peak of memory before and after in kilobytes.
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>

#include "hardware/hardware_detector.h"

namespace {

long peakMemory() {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.rfind("VmHWM:", 0) == 0) return std::strtol(line.c_str() + 6, nullptr, 10);
    }
    return 0;
}

}  // namespace

int main(int, char** argv) {
    const HardwareInfo record("", "", "", 0, "", 0, 0, "", "", 0);
    (void)HardwareDetector::sendToWebsite(argv[1], record);
    const long before = peakMemory();
    const auto start = std::chrono::steady_clock::now();
    (void)HardwareDetector::sendToWebsite(argv[1], record);
    const std::chrono::duration<double, std::milli> took = std::chrono::steady_clock::now() - start;
    std::fprintf(stderr, "%.3f %ld %ld\n", took.count(), before, peakMemory());
    std::_Exit(0);
}
