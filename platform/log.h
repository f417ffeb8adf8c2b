// The diagnostic log: standard output.
#pragma once

#include <string_view>

namespace platform {

// Call this first in main, before anything opens a file or starts a thread. From then on the log alone has standard
// output: what libraries print there goes to standard error, and children do not inherit it. Standard descriptors that
// the process was started without are opened on /dev/null, so that no file or socket gets their numbers. A reader that
// goes away no longer ends the process (SIGPIPE is ignored).
void beginLog();

// Writes `message`, the value that it announces, and a line feed to standard output, flushed before it returns. Lines
// from several threads never mix. On a terminal control characters are shown instead of obeyed, but for tabs and the
// line endings LF and CR LF; everywhere else every byte is as it was. A standard output that is closed, or a disk
// that is full, loses the line and nothing else; a full pipe blocks the caller until somebody reads it. Before
// beginLog() nothing is written. Safe from any thread.
void log(std::string_view message, std::string_view value = {});

}  // namespace platform
