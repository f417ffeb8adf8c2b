// A named pipe that scripts write to and the test reads, or that they wait at in vain.
#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <string>

#include "tests/end_to_end/rig/patience.h"
#include "tests/support/descriptor.h"

namespace end_to_end {

using testSupport::Descriptor;

// Held open at both ends, so that opening it never waits for the other side. A script that still waits to read from it
// sees its end when the object goes. For the thread that made it alone.
class Fifo {
  public:
    explicit Fifo(std::filesystem::path path);

    const std::filesystem::path& path() const { return path_; }

    // All that has ever been written into it.
    const std::string& bytes();

    // Waits until `enough` is true of all that has been written; false when it is not within the limit.
    bool waitUntil(const std::function<bool(const std::string&)>& enough, std::chrono::milliseconds limit = patience);

  private:
    std::filesystem::path path_;
    Descriptor descriptor_;
    std::string bytes_;
};

}  // namespace end_to_end
