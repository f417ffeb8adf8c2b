#include "benchmarks/process_figures.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

namespace benchmarks {

double peakMemoryOf(pid_t process) {
    std::ifstream status("/proc/" + std::to_string(process) + "/status");
    for (std::string line; std::getline(status, line);) {
        if (line.rfind("VmHWM:", 0) == 0) return std::strtod(line.c_str() + 6, nullptr) / 1024;
    }
    return 0;
}

Activity activityOf(pid_t process) {
    Activity activity;
    for (const auto& thread : std::filesystem::directory_iterator("/proc/" + std::to_string(process) + "/task")) {
        double nanoseconds = 0;
        std::ifstream(thread.path() / "schedstat") >> nanoseconds;
        activity.processorTime += nanoseconds / 1e6;
        std::ifstream status(thread.path() / "status");
        for (std::string line; std::getline(status, line);) {
            if (line.rfind("voluntary_ctxt_switches:", 0) == 0)
                activity.wakeUps += std::strtod(line.c_str() + 24, nullptr);
        }
    }
    return activity;
}

}  // namespace benchmarks
