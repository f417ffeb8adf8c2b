// Runs scripts in a mount namespace of their own.
#pragma once

#include <unistd.h>

#include <optional>
#include <string>

#include "tests/support/shell.h"

namespace testSupport {

// Runs `script` by sh(1). Root needs CAP_SYS_ADMIN, other users need user namespaces.
[[nodiscard]] inline ShellResult shellWithOwnMounts(const std::string& script) {
    const std::string user = geteuid() == 0 ? "" : "--map-root-user ";
    return shell("unshare --mount " + user + "sh -c " + quoted(script));
}

// Why shellWithOwnMounts() can't mount, for GTEST_SKIP(); nothing if it can.
[[nodiscard]] inline std::optional<std::string> whyNoOwnMounts() {
    const ShellResult attempt = shellWithOwnMounts("mount -t tmpfs none /mnt");
    if (attempt.status == 0) return std::nullopt;
    return geteuid() == 0 ? "needs mounts of its own (CAP_SYS_ADMIN, and a root folder that is a mount point)"
                          : "needs mounts of its own (user namespaces)";
}

}  // namespace testSupport
