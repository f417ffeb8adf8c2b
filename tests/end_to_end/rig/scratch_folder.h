// A folder for one test's files.
#pragma once

#include <filesystem>

namespace end_to_end {

// An empty folder in the folder for temporary files, readable by this user alone; the destructor removes it. If it
// can't be made, the process aborts.
class ScratchFolder {
  public:
    ScratchFolder();
    ~ScratchFolder();
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    const std::filesystem::path& path() const { return path_; }

  private:
    std::filesystem::path path_;
};

}  // namespace end_to_end
