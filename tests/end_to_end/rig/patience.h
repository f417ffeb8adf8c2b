// How long the rig waits for an expected event before the test fails.
#pragma once

#include <algorithm>
#include <chrono>

namespace end_to_end {

inline constexpr std::chrono::seconds patience{60};

// The time left until `deadline`, at least 0, for poll(2).
[[nodiscard]] inline int millisecondsUntil(std::chrono::steady_clock::time_point deadline) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
    return std::max(0, static_cast<int>(left.count()));
}

}  // namespace end_to_end
