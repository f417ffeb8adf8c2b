// The command by which programs open a page in the browser, xdg-open(1), as a test wants it.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include "tests/end_to_end/rig/fifo.h"
#include "tests/end_to_end/rig/scratch_folder.h"

namespace end_to_end {

// Succeeds at once. Make it before the program and keep it for longer.
class ScriptedOpener {
  public:
    ScriptedOpener();

    // For the program's PATH.
    std::string searchPath() const;

    // The arguments of each call so far, byte for byte.
    std::vector<std::vector<std::string>> calls();
    bool waitForCalls(std::size_t count, std::chrono::milliseconds limit = patience);

  private:
    ScratchFolder folder_;
    Fifo record_;
};

}  // namespace end_to_end
