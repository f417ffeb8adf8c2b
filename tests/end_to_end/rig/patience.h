// How long the rig waits for an expected event before the test fails.
#pragma once

#include <chrono>

namespace end_to_end {

inline constexpr std::chrono::seconds patience{60};

}  // namespace end_to_end
