// Logs what its first argument says, beside other uses of descriptors.
#include "platform/log.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

using platform::log;

namespace {

void logLongAndShortLines() {
    std::vector<std::thread> threads;
    for (const char letter : {'a', 'b', 'c', 'd'}) {
        threads.emplace_back([letter] {
            for (int line = 0; line < 5; ++line) {
                log(std::string(200'000, letter));
                log(std::string(1, letter));
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
}

}  // namespace

int main(int, char** argv) {
    platform::beginLog();
    const std::string what = argv[1];
    if (what == "beside-a-file") {
        if (open(argv[2], O_WRONLY | O_CREAT, 0600) < 0) return 1;
        for (int line = 0; line < 3; ++line) log("logged");
    } else if (what == "with-a-child") {
        log("logged");
        return std::system("ls -l /proc/self/fd >&2");
    } else if (what == "until-there-is-room") {
        log("lost");
        if (unlink(argv[2]) != 0) return 1;
        log("kept");
    } else {
        logLongAndShortLines();
    }
}
