// The floor of a detection: the commands and nothing else.
#pragma once

namespace benchmarks {

// Starts each of the five commands of a detection, reads what it prints, and reaps it before the next.
void runBareCommands();

}  // namespace benchmarks
