// What the machine knows about itself.
#pragma once

#include <optional>
#include <string>

namespace platform {

// The machine's own UUID, the same at every start and for every user; absent when the machine has none or does not say.
// Taken as the system gives it: 36 upper-case characters on every machine seen, but nothing checks that.
// Safe from any thread.
[[nodiscard]] std::optional<std::string> platformUuid();

}  // namespace platform
