// A test process in a world of its own.
#pragma once

#include <optional>
#include <string>

namespace end_to_end {

enum class Network { own, shared };

// Puts the process into mount, process and, on request, network namespaces of its own, so that tests can run in
// parallel, use fixed loopback ports and leave no process behind, whichever way they end. In a network of its own only
// the loopback interface exists, and it is up. Works for root; for another user it takes a user namespace as well.
//
// Call it first in main, before any thread is started and anything is printed. It returns in a child of the calling
// process, while that one waits and ends with the child's status. Returns what was not permitted, or nothing on
// success.
[[nodiscard]] std::optional<std::string> enterOwnNamespaces(Network network);

}  // namespace end_to_end
