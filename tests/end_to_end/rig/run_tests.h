#pragma once

namespace end_to_end {

// Runs the tests and then ends whatever the programs, buses and scripts under test have left running. Returns the
// status for main.
[[nodiscard]] int runTests(int argc, char** argv);

}  // namespace end_to_end
