#include "tests/website_stand_in/stand_in_process.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <charconv>
#include <csignal>
#include <string_view>
#include <system_error>

extern char** environ;

namespace {

constexpr int patienceMilliseconds = 30'000;

}  // namespace

StandInProcess::Pipe::Pipe() {
    std::array<int, 2> ends{};
    if (pipe(ends.data()) != 0) throw std::system_error(errno, std::generic_category(), "pipe");
    readEnd_ = ends[0];
    writeEnd_ = ends[1];
    for (const int end : ends) fcntl(end, F_SETFD, FD_CLOEXEC);
}

StandInProcess::Pipe::~Pipe() {
    closeWriteEnd();
    close(readEnd_);
}

void StandInProcess::Pipe::closeWriteEnd() {
    if (writeEnd_ >= 0) close(writeEnd_);
    writeEnd_ = -1;
}

bool StandInProcess::Pipe::fill() {
    pollfd readable{readEnd_, POLLIN, 0};
    if (poll(&readable, 1, patienceMilliseconds) != 1) return false;
    std::array<char, 4096> buffer{};
    const ssize_t count = read(readEnd_, buffer.data(), buffer.size());
    ended = count == 0;
    if (count <= 0) return false;
    bytes.append(buffer.data(), static_cast<std::size_t>(count));
    return true;
}

StandInProcess::StandInProcess(const std::vector<std::string>& arguments) {
    std::vector<std::string> words = {WEBSITE_STAND_IN_PROGRAM};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<char*> pointers;
    for (std::string& word : words) pointers.push_back(word.data());
    pointers.push_back(nullptr);

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, output_.writeEnd(), STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, error_.writeEnd(), STDERR_FILENO);
    const int failure = posix_spawn(&pid_, words[0].c_str(), &actions, nullptr, pointers.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (failure != 0) throw std::system_error(failure, std::generic_category(), words[0]);

    // The child's copies are now the only ones, so that its end is the end of the pipes.
    output_.closeWriteEnd();
    error_.closeWriteEnd();
}

StandInProcess::~StandInProcess() {
    if (pid_ == 0) return;
    kill(pid_, SIGKILL);
    waitpid(pid_, nullptr, 0);
}

std::optional<std::string> StandInProcess::nextLine() {
    std::size_t end = output_.bytes.find('\n');
    while (end == std::string::npos) {
        if (!output_.fill()) return std::nullopt;
        end = output_.bytes.find('\n');
    }
    std::string line = output_.bytes.substr(0, end);
    output_.bytes.erase(0, end + 1);
    return line;
}

std::optional<int> StandInProcess::port() {
    constexpr std::string_view beginning = "Listening on http://127.0.0.1:";
    const std::optional<std::string> line = nextLine();
    if (!line || !line->starts_with(beginning)) return std::nullopt;
    int port = 0;
    const char* const end = line->data() + line->size();
    const auto [stop, error] = std::from_chars(line->data() + beginning.size(), end, port);
    if (error != std::errc() || stop != end) return std::nullopt;
    return port;
}

void StandInProcess::signal(int number) const {
    if (pid_ != 0) kill(pid_, number);
}

std::optional<int> StandInProcess::waitForExit() {
    while (nextLine()) continue;
    if (!output_.ended) return std::nullopt;
    int status = 0;
    if (waitpid(pid_, &status, 0) != pid_) return std::nullopt;
    pid_ = 0;
    return WIFEXITED(status) ? std::optional(WEXITSTATUS(status)) : std::nullopt;
}

std::string StandInProcess::standardError() {
    while (error_.fill()) continue;
    return error_.bytes;
}
