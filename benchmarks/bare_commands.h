// The floor of a detection: only the commands.
#pragma once

namespace benchmarks {

// Starts the five commands of a detection one after another, and reads and reaps each.
void runBareCommands();

}  // namespace benchmarks
