#pragma once

namespace end_to_end {

// Runs the tests, then kills all processes that they left running. Returns the exit status.
[[nodiscard]] int runTests(int argc, char** argv);

}  // namespace end_to_end
