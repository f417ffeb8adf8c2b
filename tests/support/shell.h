// Runs shell commands and captures their output.
#pragma once

#include <sys/wait.h>

#include <csignal>
#include <cstdio>
#include <string>
#include <utility>

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

// A command that runs in the background. The destructor kills it.
class BackgroundCommand {
  public:
    explicit BackgroundCommand(const std::string& command) : pipe_(popen(("echo $$; exec " + command).c_str(), "r")) {
        process_ = std::stoi(nextLine());
    }
    ~BackgroundCommand() {
        if (pipe_ != nullptr) end(SIGKILL);
    }
    BackgroundCommand(const BackgroundCommand&) = delete;
    BackgroundCommand& operator=(const BackgroundCommand&) = delete;

    // The next line on standard output; empty at its end.
    std::string nextLine() {
        std::string line;
        for (int byte = fgetc(pipe_); byte != '\n' && byte != EOF; byte = fgetc(pipe_)) line += static_cast<char>(byte);
        return line;
    }

    // Sends the signal and waits. Returns the status as waitpid() does.
    int end(int signal) {
        kill(process_, signal);
        return pclose(std::exchange(pipe_, nullptr));
    }

  private:
    FILE* pipe_;
    pid_t process_ = 0;
};

// The text quoted as one word for the shell.
[[nodiscard]] inline std::string quoted(const std::string& text) {
    std::string word = "'";
    for (const char character : text) word += character == '\'' ? std::string("'\\''") : std::string(1, character);
    return word + "'";
}

}  // namespace testSupport
