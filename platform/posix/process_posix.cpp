// Child processes by posix_spawn.
#include "platform/process.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

extern char** environ;

namespace platform {

namespace {

class Descriptor {
  public:
    explicit Descriptor(int number = -1) : number_(number) {}
    Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(number_, other.number_);
        return *this;
    }
    ~Descriptor() { close(); }

    void close() {
        if (number_ >= 0) ::close(std::exchange(number_, -1));
    }

    [[nodiscard]] int number() const { return number_; }

  private:
    int number_;
};

struct Pipe {
    Descriptor reader;
    Descriptor writer;
};

std::optional<Pipe> makePipe() {
    std::array<int, 2> ends{};
#ifdef __linux__
    if (pipe2(ends.data(), O_CLOEXEC) != 0) return std::nullopt;
#else
    if (pipe(ends.data()) != 0) return std::nullopt;
    for (const int end : ends) fcntl(end, F_SETFD, FD_CLOEXEC);
#endif
    return Pipe{Descriptor(ends[0]), Descriptor(ends[1])};
}

std::string readToEnd(const Descriptor& reader) {
    std::string bytes;
    std::array<char, 65536> buffer;
    for (;;) {
        const ssize_t count = read(reader.number(), buffer.data(), buffer.size());
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) return bytes;
        bytes.append(buffer.data(), static_cast<std::size_t>(count));
    }
}

// The child gets the write ends alone: every other descriptor of ours is closed in it, or a second child started at the
// same moment would hold the first one's pipe open and its reader would never see the end. It is a group of its own, so
// that an interrupt typed at our terminal is not meant for it, and has its signals as a fresh program expects them.
std::optional<pid_t> spawn(const std::string& path, std::span<const std::string> arguments, const Pipe& output,
                           const Pipe& error) {
    std::vector<char*> argumentVector{const_cast<char*>(path.c_str())};
    for (const std::string& argument : arguments) argumentVector.push_back(const_cast<char*>(argument.c_str()));
    argumentVector.push_back(nullptr);

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, output.writer.number(), STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, error.writer.number(), STDERR_FILENO);

    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    short flags = POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF;
#ifdef __linux__
    posix_spawn_file_actions_addclosefrom_np(&actions, STDERR_FILENO + 1);
#else
    flags |= POSIX_SPAWN_CLOEXEC_DEFAULT;
    posix_spawn_file_actions_addinherit_np(&actions, STDIN_FILENO);
#endif
    posix_spawnattr_setflags(&attributes, flags);
    posix_spawnattr_setpgroup(&attributes, 0);
    sigset_t signals;
    sigemptyset(&signals);
    posix_spawnattr_setsigmask(&attributes, &signals);
    sigfillset(&signals);
    posix_spawnattr_setsigdefault(&attributes, &signals);

    pid_t child = 0;
    const int failure = posix_spawn(&child, path.c_str(), &actions, &attributes, argumentVector.data(), environ);
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&actions);
    if (failure != 0) return std::nullopt;
    return child;
}

// Nobody wants these bytes, but unread ones would fill the pipe and stop a talkative child for ever.
void throwAwayInTheBackground(Descriptor reader) {
    try {
        std::thread([reader = std::move(reader)] { readToEnd(reader); }).detach();
    } catch (const std::system_error&) {
        // Without a thread the end is closed here, and the child is told so when it writes.
    }
}

void waitUntilExit(pid_t child) {
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
}

}  // namespace

std::optional<std::string> standardOutputOf(const std::string& path, std::span<const std::string> arguments) {
    std::optional<Pipe> output = makePipe();
    std::optional<Pipe> error = makePipe();
    if (!output || !error) return std::nullopt;

    const std::optional<pid_t> child = spawn(path, arguments, *output, *error);
    output->writer.close();
    error->writer.close();
    if (!child) return std::nullopt;

    throwAwayInTheBackground(std::move(error->reader));
    waitUntilExit(*child);
    return readToEnd(output->reader);
}

}  // namespace platform
