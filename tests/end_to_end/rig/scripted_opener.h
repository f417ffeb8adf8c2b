// The command by which programs open a page in the browser, xdg-open(1), as a test wants it.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include "tests/end_to_end/rig/fifo.h"
#include "tests/end_to_end/rig/scratch_folder.h"

namespace end_to_end {

// Succeeds at once unless told otherwise. What it does can be changed at any time. Make it before the program and keep
// it for longer.
class ScriptedOpener {
  public:
    ScriptedOpener();

    void exitWith(int status);
    void hang();  // until this object goes
    void makeMissing();

    // For the program's PATH. While the opener is missing, nothing of this machine is to be found by it either; so make
    // it missing before asking.
    std::string searchPath() const;

    // The arguments of each call so far, byte for byte.
    std::vector<std::vector<std::string>> calls();
    bool waitForCalls(std::size_t count, std::chrono::milliseconds limit = patience);

  private:
    void become(const std::string& lastLine) const;
    std::filesystem::path file() const;

    ScratchFolder folder_;
    Fifo record_;
    Fifo gate_;
};

}  // namespace end_to_end
