// Random UUIDs.
#pragma once

#include <string>

namespace platform {

// A new random UUID (RFC 4122, version 4): 36 characters, upper case. Safe from any thread.
[[nodiscard]] std::string randomUuid();

}  // namespace platform
