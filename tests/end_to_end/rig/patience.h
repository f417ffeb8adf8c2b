// How long the rig waits for something that is bound to happen before it calls that a failure.
#pragma once

#include <chrono>

namespace end_to_end {

inline constexpr std::chrono::seconds patience{60};

}  // namespace end_to_end
