// The machine's identity.
#pragma once

#include <optional>
#include <string>

namespace platform {

// The machine's UUID as the system gives it, unchecked: the same at every start and for every user. Absent when the
// machine has none. Safe from any thread.
[[nodiscard]] std::optional<std::string> platformUuid();

}  // namespace platform
