// The machine's own interfaces to networks.
#pragma once

namespace platform {

// True if a non-loopback interface is up, or if unknown. Safe from any thread.
[[nodiscard]] bool networkIsUp();

}  // namespace platform
