// A named pipe that scripts write to, or block on.
#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "tests/support/descriptor.h"

namespace end_to_end {

using testSupport::Descriptor;

// Open at both ends, so that a script's open() never blocks. A script blocked in read() gets end of file when the
// object is destroyed. Use it on one thread.
class Fifo {
  public:
    explicit Fifo(std::filesystem::path path);

    const std::filesystem::path& path() const { return path_; }

    // All bytes written so far, and the complete lines among them, without line feeds.
    const std::string& bytes();
    std::vector<std::string> lines();

    // Wait until `enough` is true for the bytes, or until there are `count` lines; return false after the limit.
    bool waitUntil(const std::function<bool(const std::string&)>& enough);
    bool waitForLines(std::size_t count);

  private:
    std::filesystem::path path_;
    Descriptor descriptor_;
    std::string bytes_;
};

}  // namespace end_to_end
