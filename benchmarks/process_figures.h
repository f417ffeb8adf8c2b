// Reads the system's figures for a running process.
#pragma once

#include <sys/types.h>

namespace benchmarks {

[[nodiscard]] double peakMemoryOf(pid_t process);  // In megabytes, so far.

struct Activity {
    double processorTime = 0;  // In milliseconds, of all its threads.
    double wakeUps = 0;
};

[[nodiscard]] Activity activityOf(pid_t process);  // Since its start.

}  // namespace benchmarks
