// Children of this program, as all back ends start them.
#pragma once

#include <sys/types.h>

#include <optional>
#include <vector>

namespace platform {

// What a child has for its standard streams: a descriptor of ours, or /dev/null where it is absent.
struct ChildStreams {
    std::optional<int> input;
    std::optional<int> output;
    std::optional<int> error;
};

// Starts the executable at `path` with `arguments` (without the program's name). The child has no other descriptor of
// ours, handles signals by default and is a session of its own, so that no key typed at our terminal stops it. It
// inherits environment and working directory. Absent when it could not be started. Safe from any thread.
[[nodiscard]] std::optional<pid_t> startChild(const char* path, std::vector<const char*> arguments,
                                              const ChildStreams& streams);

// Blocks until `child` has ended. Whether it exited with status 0.
bool waitForExit(pid_t child);

}  // namespace platform
