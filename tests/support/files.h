// Files of a test.
#pragma once

#include <stdlib.h>
#include <unistd.h>  // Declares mkdtemp() on macOS.

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <system_error>

namespace testSupport {

// An empty folder among the temporary files, for this user alone; the destructor removes it.
class TemporaryFolder {
  public:
    TemporaryFolder() {
        std::string name = std::filesystem::temp_directory_path() / "hardware-detector-test-XXXXXX";
        if (mkdtemp(name.data()) == nullptr) throw std::system_error(errno, std::generic_category(), name);
        path_ = name;
    }
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    [[nodiscard]] const std::filesystem::path& path() const { return path_; }

  private:
    std::filesystem::path path_;
};

// The bytes of the file; empty if it can't be read.
[[nodiscard]] inline std::string textOf(const std::filesystem::path& file) {
    std::ostringstream text;
    text << std::ifstream(file, std::ios::binary).rdbuf();
    return text.str();
}

}  // namespace testSupport
