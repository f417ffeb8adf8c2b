// Prints how many milliseconds the five commands of a detection take.
#include "benchmarks/bare_commands.h"

#include <chrono>
#include <cstdio>

int main() {
    const auto start = std::chrono::steady_clock::now();
    benchmarks::runBareCommands();
    const std::chrono::duration<double, std::milli> took = std::chrono::steady_clock::now() - start;
    std::printf("%.3f\n", took.count());
}
