// A script in place of xdg-open(1), the command that opens a page in the browser.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include "tests/end_to_end/rig/fifo.h"
#include "tests/support/files.h"

namespace end_to_end {

// The script succeeds at once. The object must outlive the program.
class ScriptedOpener {
  public:
    ScriptedOpener();

    // For the program's PATH.
    std::string searchPath() const;

    // The arguments of each call so far, byte for byte.
    std::vector<std::vector<std::string>> calls();
    bool waitForCalls(std::size_t count, std::chrono::milliseconds limit = patience);

  private:
    testSupport::TemporaryFolder folder_;
    Fifo record_;
};

}  // namespace end_to_end
