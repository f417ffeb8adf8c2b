#include "tests/end_to_end/rig/fifo.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <utility>

#include "tests/end_to_end/rig/patience.h"
#include "tests/end_to_end/rig/program.h"

namespace end_to_end {

Fifo::Fifo(std::filesystem::path path) : path_(std::move(path)) {
    if (mkfifo(path_.c_str(), 0600) == 0)
        descriptor_ = Descriptor(open(path_.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC));
    if (descriptor_.valid()) return;
    std::perror(path_.c_str());
    std::abort();
}

const std::string& Fifo::bytes() {
    std::array<char, 4096> buffer{};
    ssize_t count = 0;
    do {
        count = read(descriptor_.number(), buffer.data(), buffer.size());
        if (count > 0) bytes_.append(buffer.data(), static_cast<std::size_t>(count));
    } while (count > 0 || (count < 0 && errno == EINTR));
    return bytes_;
}

std::vector<std::string> Fifo::lines() { return wholeLinesOf(bytes()); }

bool Fifo::waitUntil(const std::function<bool(const std::string&)>& enough) {
    const auto deadline = std::chrono::steady_clock::now() + patience;
    while (!enough(bytes())) {
        const int left = millisecondsUntil(deadline);
        if (left == 0) return false;
        pollfd more{descriptor_.number(), POLLIN, 0};
        poll(&more, 1, left);
    }
    return true;
}

bool Fifo::waitForLines(std::size_t count) {
    return waitUntil([&](const std::string& bytes) { return wholeLinesOf(bytes).size() >= count; });
}

}  // namespace end_to_end
