// A test process with mounts and a network of its own.
#pragma once

#include <optional>
#include <string>

namespace end_to_end {

// Gives the process mounts of its own and a network with nothing but loopback. Root needs CAP_SYS_ADMIN for it, another
// user the right to make user namespaces; a bare chroot, whose root folder is no mount point, won't do.
//
// Call it first in main, before any thread is started. Where it is not permitted, the process keeps its network.
void enterOwnNamespaces();

// Why the process has none, for GTEST_SKIP(); nothing when it has them.
[[nodiscard]] const std::optional<std::string>& whyNoOwnNamespaces();

}  // namespace end_to_end
