// Puts a test process into mount and network namespaces of its own.
#pragma once

#include <optional>
#include <string>

namespace end_to_end {

// The new network has only the loopback interface. Root needs CAP_SYS_ADMIN, other users need user namespaces, and the
// root folder must be a mount point, which it is not in a bare chroot. Without these the process keeps its network.
//
// Call it first in main(), before any thread starts.
void enterOwnNamespaces();

// Why the process has no namespaces of its own, for GTEST_SKIP(); nothing if it has them.
[[nodiscard]] const std::optional<std::string>& whyNoOwnNamespaces();

}  // namespace end_to_end
