// The diagnostic log: standard output.
#pragma once

#include <string_view>

namespace platform {

// Writes `message`, the value that it announces, and a line feed to standard output, flushed before it returns. Lines
// from several threads never mix. On a terminal control characters are shown instead of obeyed; everywhere else every
// byte is as it was. A standard output that is closed or full loses the line and nothing else. Safe from
// any thread.
void log(std::string_view message, std::string_view value = {});

}  // namespace platform
