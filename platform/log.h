// The diagnostic log: standard output.
#pragma once

#include <string_view>

namespace platform {

// Call this first in main. From then on only the log writes to standard output: what libraries print goes to standard
// error. Opens missing standard descriptors on /dev/null, so that no file or socket gets their numbers, and ignores
// SIGPIPE, so that a reader that goes away doesn't end the process.
void beginLog();

// Writes `message`, `value` and a line feed to standard output and flushes it; before beginLog() it writes nothing.
// Lines of several threads never mix. A terminal gets control characters as visible symbols, except for tabs and line
// endings. If standard output is closed or the disk is full, the line is lost; a full pipe blocks. Safe from any
// thread.
void log(std::string_view message, std::string_view value = {});

}  // namespace platform
