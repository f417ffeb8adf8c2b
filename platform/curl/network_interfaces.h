// The machine's own interfaces to networks.
#pragma once

namespace platform {

// Whether one of them is up that leads beyond this machine. True as well when that cannot be told. Safe from any
// thread.
[[nodiscard]] bool networkIsUp();

}  // namespace platform
