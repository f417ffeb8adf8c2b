// A folder for one test's files.
#pragma once

#include <filesystem>

namespace end_to_end {

// Made empty and for this user alone below the folder for temporary files, removed with all that is in it at the end of
// its life. Without a place to make it in, the process ends with a message.
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
