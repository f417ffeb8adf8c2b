// Puts a test process into a mount namespace of its own.
#pragma once

#include <optional>
#include <string>

namespace end_to_end {

// Root needs CAP_SYS_ADMIN, other users need user namespaces, and the root folder must be a mount point, which it is
// not in a bare chroot. Call it first in main(), before any thread starts.
void enterMountNamespace();

// Why the process has no mount namespace of its own, for GTEST_SKIP(); nothing if it has one.
[[nodiscard]] const std::optional<std::string>& whyNoMountNamespace();

}  // namespace end_to_end
