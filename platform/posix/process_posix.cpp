// Child processes and their pipes, by POSIX.
#include "platform/process.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <utility>

#include "platform/posix/child_process.h"

namespace platform {

namespace {

class Descriptor {
  public:
    explicit Descriptor(int number) : number_(number) {}
    Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
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

// No other child may inherit the ends, or the reader would wait for that child too.
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

}  // namespace

std::optional<std::string> standardOutputOf(const std::string& path, std::span<const std::string> arguments) {
    std::optional<Pipe> output = makePipe();
    std::optional<Pipe> error = makePipe();
    if (!output || !error) return std::nullopt;
    // Nobody reads this one. A child that fills it loses the rest, and neither blocks nor dies by SIGPIPE.
    fcntl(error->writer.number(), F_SETFL, O_NONBLOCK);

    std::vector<const char*> words;
    for (const std::string& argument : arguments) words.push_back(argument.c_str());
    const std::optional<pid_t> child =
        startChild(path.c_str(), std::move(words), {STDIN_FILENO, output->writer.number(), error->writer.number()});
    output->writer.close();
    error->writer.close();
    if (!child) return std::nullopt;

    waitForExit(*child);
    return readToEnd(output->reader);
}

}  // namespace platform
