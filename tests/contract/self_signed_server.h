#pragma once

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

extern char** environ;

namespace httpContract {

// The openssl command as a server with a certificate that it has signed itself.
class SelfSignedServer {
  public:
    SelfSignedServer() {
        std::string pattern = ::testing::TempDir() + "http-contract-XXXXXX";
        if (mkdtemp(pattern.data()) == nullptr) return;
        folder_ = pattern;
        if (run({"openssl", "req", "-x509", "-newkey", "rsa:2048", "-nodes", "-days", "2", "-subj", "/CN=127.0.0.1",
                 "-addext", "subjectAltName=IP:127.0.0.1", "-keyout", folder_ + "/key", "-out", folder_ + "/cert"})) {
            begin();
        }
    }
    ~SelfSignedServer() {
        if (process_ > 0) {
            kill(process_, SIGTERM);
            waitpid(process_, nullptr, 0);
        }
        if (!folder_.empty()) std::filesystem::remove_all(folder_);
    }
    SelfSignedServer(const SelfSignedServer&) = delete;
    SelfSignedServer& operator=(const SelfSignedServer&) = delete;

    // Empty when it could not be started.
    [[nodiscard]] std::string url() const { return port_.empty() ? "" : "https://127.0.0.1:" + port_ + "/"; }

  private:
    static pid_t spawn(std::vector<std::string> command, int output) {
        std::vector<char*> arguments;
        for (std::string& argument : command) arguments.push_back(argument.data());
        arguments.push_back(nullptr);
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
        posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
        if (output >= 0) posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
        pid_t process = -1;
        if (posix_spawnp(&process, arguments.front(), &actions, nullptr, arguments.data(), environ) != 0) process = -1;
        posix_spawn_file_actions_destroy(&actions);
        return process;
    }

    static bool run(const std::vector<std::string>& command) {
        int status = -1;
        const pid_t process = spawn(command, -1);
        return process > 0 && waitpid(process, &status, 0) == process && status == 0;
    }

    void begin() {
        std::array<int, 2> ends{};
        if (pipe(ends.data()) != 0) return;
        process_ = spawn({"openssl", "s_server", "-accept", "127.0.0.1:0", "-key", folder_ + "/key", "-cert",
                          folder_ + "/cert", "-www"},
                         ends[1]);
        close(ends[1]);
        // It says "ACCEPT 127.0.0.1:<port>" when it is ready.
        struct Close {
            void operator()(FILE* file) const { std::fclose(file); }
        };
        const std::unique_ptr<FILE, Close> lines(fdopen(ends[0], "r"));
        std::array<char, 256> buffer;
        while (port_.empty() && std::fgets(buffer.data(), buffer.size(), lines.get()) != nullptr) {
            const std::string line = buffer.data();
            if (line.starts_with("ACCEPT ")) port_ = line.substr(line.rfind(':') + 1);
        }
        port_.erase(std::remove(port_.begin(), port_.end(), '\n'), port_.end());
    }

    std::string folder_;
    pid_t process_ = -1;
    std::string port_;
};

}  // namespace httpContract
