// Child processes.
#pragma once

#include <optional>
#include <span>
#include <string>

namespace platform {

// Starts the executable at `path` (absolute; no shell, no search) with `arguments` (without the program's name), waits
// until it has exited, and only then reads what it wrote to standard output: the bytes, unchanged. Absent when it could
// not be started. It inherits standard input, environment and working directory. Its standard error is a pipe that
// nobody reads: what does not fit is lost. Its exit status is ignored. If it writes more to standard output than a pipe
// holds (65,536 bytes on Linux), it never exits and the call never returns. Safe from any thread.
[[nodiscard]] std::optional<std::string> standardOutputOf(const std::string& path,
                                                          std::span<const std::string> arguments);

}  // namespace platform
