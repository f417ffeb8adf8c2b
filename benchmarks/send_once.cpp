// Sends a record to the address given and tells on standard error what it took: milliseconds, and the peak of memory
// before and after in kilobytes.
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
    const long before = peakMemory();
    const auto start = std::chrono::steady_clock::now();
    (void)HardwareDetector::sendToWebsite(argv[1], HardwareInfo("", "", "", 0, "", 0, 0, "", "", 0));
    const std::chrono::duration<double, std::milli> took = std::chrono::steady_clock::now() - start;
    std::fprintf(stderr, "%.3f %ld %ld\n", took.count(), before, peakMemory());
    std::_Exit(0);
}
