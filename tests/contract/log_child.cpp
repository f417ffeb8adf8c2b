// Logs as its first argument says.
#include "platform/log.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

using platform::log;

namespace {

void logManyLongLinesFromThreads() {
    std::vector<std::thread> threads;
    for (const char letter : {'a', 'b', 'c', 'd', 'e', 'f', 'g', 'h'}) {
        threads.emplace_back([letter] {
            log(std::string(200'000, letter));
            const std::string half(5'000, letter);
            for (int line = 0; line < 50; ++line) log(half, half);
        });
    }
    for (std::thread& thread : threads) thread.join();
}

}  // namespace

int main(int, char** argv) {
    const std::string what = argv[1];
    if (what == "too-early") log("lost");
    platform::beginLog();
    if (what == "line-and-wait") {
        log("here");
        getchar();
    } else if (what == "too-early") {
        log("kept");
    } else if (what == "odd-bytes") {
        log(std::string_view("nul \0 invalid \xFF\xFE end", 20));
        log("");
    } else if (what == "controls") {
        log("\x1B[2J\r", "\x7F \t \xC2\x9B \xC3\xA9");
    } else if (what == "line-endings") {
        log("CR LF\r\n", "LF\nCR\rLF CR\n\r");
    } else if (what == "many-long-lines") {
        logManyLongLinesFromThreads();
    } else if (what == "strangers") {
        std::printf("printed\n");
        std::fflush(stdout);
        if (write(STDOUT_FILENO, "written\n", 8) != 8) return 1;
        if (std::system("echo a child") != 0) return 1;
        log("logged");
    } else if (what == "beside-a-file") {
        if (open(argv[2], O_WRONLY | O_CREAT, 0600) < 0) return 1;
        for (int line = 0; line < 3; ++line) log("logged");
    } else if (what == "with-a-child") {
        log("logged");
        return std::system(argv[2]);
    } else if (what == "until-there-is-room") {
        log("lost");
        if (unlink(argv[2]) != 0) return 1;
        log("kept");
    } else {
        for (int line = 0; line < 1'000; ++line) log("a line that nobody reads");
    }
}
