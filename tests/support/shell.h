// Runs shell commands and captures their output.
#pragma once

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

namespace testSupport {

struct ShellResult {
    std::string output;  // Standard output.
    int status = -1;     // The exit status; -1 after a signal.
};

[[nodiscard]] inline ShellResult shell(const std::string& command) {
    ShellResult result;
    FILE* pipe = popen(command.c_str(), "r");
    if (pipe == nullptr) return result;
    for (int byte = fgetc(pipe); byte != EOF; byte = fgetc(pipe)) result.output += static_cast<char>(byte);
    const int status = pclose(pipe);
    if (WIFEXITED(status)) result.status = WEXITSTATUS(status);
    return result;
}

// The text quoted as one word for the shell.
[[nodiscard]] inline std::string quoted(const std::string& text) {
    std::string word = "'";
    for (const char character : text) word += character == '\'' ? std::string("'\\''") : std::string(1, character);
    return word + "'";
}

// A folder of its own, gone with the object.
class TemporaryFolder {
  public:
    TemporaryFolder() {
        std::string name = std::filesystem::temp_directory_path() / "contract-XXXXXX";
        path_ = mkdtemp(name.data());
    }
    ~TemporaryFolder() { std::filesystem::remove_all(path_); }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    [[nodiscard]] const std::filesystem::path& path() const { return path_; }

  private:
    std::filesystem::path path_;
};

}  // namespace testSupport
