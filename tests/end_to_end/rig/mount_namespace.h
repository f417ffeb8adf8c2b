// A mount namespace for a test process.
#pragma once

#include <optional>
#include <string>

namespace end_to_end {

// The first call puts the process into a mount namespace of its own. Call it before any thread starts. Returns why that
// is not possible, for GTEST_SKIP(); nothing if it is: root needs CAP_SYS_ADMIN, other users need user namespaces, and
// the root folder must be a mount point, which it is not in a bare chroot.
[[nodiscard]] std::optional<std::string> whyNoMountNamespace();

}  // namespace end_to_end
