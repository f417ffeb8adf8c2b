#include "tests/end_to_end/rig/program.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/eventfd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <utility>

namespace end_to_end {

std::vector<std::string> wholeLinesOf(std::string_view bytes) {
    std::vector<std::string> lines;
    for (std::size_t end = bytes.find('\n'); end != std::string_view::npos; end = bytes.find('\n')) {
        lines.emplace_back(bytes.substr(0, end));
        bytes.remove_prefix(end + 1);
    }
    return lines;
}

namespace {

std::optional<std::string> firstLineOf(std::string_view bytes, const std::function<bool(std::string_view)>& matches) {
    for (std::string& line : wholeLinesOf(bytes)) {
        if (matches(line)) return std::move(line);
    }
    return std::nullopt;
}

// Opens a pipe and returns its writing end. Only `reader` is non-blocking, so that the program gets an ordinary pipe.
Descriptor openPipe(Descriptor& reader) {
    Pipe pipe;
    fcntl(pipe.reader.number(), F_SETFL, O_NONBLOCK);
    reader = std::move(pipe.reader);
    return std::move(pipe.writer);
}

}  // namespace

Program::Program(const Setting& setting) : stop_(eventfd(0, EFD_CLOEXEC)) {
    const Descriptor output = openPipe(output_.reader);
    const Descriptor error = openPipe(error_.reader);
    Launch launch{setting.path, setting.arguments, setting.environment, {}, setting.noProcessSlots};
    launch.descriptors = {{output.number(), STDOUT_FILENO}, {error.number(), STDERR_FILENO}};
    process_.start(launch);
    output_.open = error_.open = true;
    reader_ = std::thread([this] { readAll(); });
}

Program::~Program() {
    signal(SIGKILL);
    waitForExit();
    stopReading();
}

std::string Program::bytes(Stream stream) const {
    const std::lock_guard lock(mutex_);
    return stream == Stream::output ? output_.bytes : error_.bytes;
}

std::vector<std::string> Program::log() const { return wholeLinesOf(bytes(Stream::output)); }

std::optional<std::string> Program::waitForLine(const std::function<bool(std::string_view)>& matches,
                                                std::chrono::milliseconds limit) const {
    std::unique_lock lock(mutex_);
    std::optional<std::string> found;
    changed_.wait_for(lock, limit, [&] {
        found = firstLineOf(output_.bytes, matches);
        return found || !output_.open;
    });
    return found;
}

bool Program::waitForLine(std::string_view line, std::chrono::milliseconds limit) const {
    return waitForLine([&](std::string_view candidate) { return candidate == line; }, limit).has_value();
}

std::optional<ExitStatus> Program::waitForExit(std::chrono::milliseconds limit) {
    const std::optional<ExitStatus> status = process_.waitForExit(limit);
    if (status) stopReading();
    return status;
}

// Reads until both pipes end or stopReading() is called, since a child of the program may keep the pipes open.
void Program::readAll() {
    bool stopped = false;
    while (!stopped && (output_.open || error_.open)) {
        std::array<pollfd, 3> events{{{stop_.number(), POLLIN, 0},
                                      {output_.open ? output_.reader.number() : -1, POLLIN, 0},
                                      {error_.open ? error_.reader.number() : -1, POLLIN, 0}}};
        if (poll(events.data(), events.size(), -1) < 0) continue;
        stopped = events[0].revents != 0;
        for (Source* const source : {&output_, &error_}) {
            if (source->open) receive(*source);
        }
    }
    const std::lock_guard lock(mutex_);
    output_.open = error_.open = false;
    changed_.notify_all();
}

// Reads all available bytes.
void Program::receive(Source& source) {
    std::array<char, 65536> buffer;
    while (true) {
        const ssize_t count = read(source.reader.number(), buffer.data(), buffer.size());
        if (count < 0 && errno == EINTR) continue;
        if (count < 0 && errno == EAGAIN) return;
        const std::lock_guard lock(mutex_);
        if (count > 0) source.bytes.append(buffer.data(), static_cast<std::size_t>(count));
        if (count <= 0) source.open = false;
        changed_.notify_all();
        if (count <= 0) return;
    }
}

void Program::stopReading() {
    if (!reader_.joinable()) return;
    eventfd_write(stop_.number(), 1);
    reader_.join();
}

}  // namespace end_to_end
