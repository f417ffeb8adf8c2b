// A script in place of xdg-open(1), the command that opens a page in the browser.
#pragma once

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

    // The pages of all calls so far.
    std::vector<std::string> pages();
    bool waitForPages(std::size_t count);  // False after the limit.

  private:
    testSupport::TemporaryFolder folder_;
    Fifo record_;
};

}  // namespace end_to_end
