// Child processes.
#pragma once

#include <optional>
#include <span>
#include <string>

namespace platform {

// Starts the executable at `path` (absolute; no shell, no search) with `arguments` (without the program's name), waits
// until it has exited, and only then reads all it wrote to standard output: the bytes, unchanged. Absent when it could
// not be started. Standard input, environment and working directory are inherited; standard error goes to a pipe of its
// own and is thrown away; the exit status is ignored. A child that writes more to standard output than a pipe holds
// (65,536 bytes on Linux) never gets to exit, and the call never returns. Blocks the calling thread without limit; safe
// from any thread.
[[nodiscard]] std::optional<std::string> standardOutputOf(const std::string& path,
                                                          std::span<const std::string> arguments);

}  // namespace platform
