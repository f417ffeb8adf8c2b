// Logs what its first argument says; its standard streams are the test's.
#include "platform/log.h"

#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

using platform::log;

namespace {

void logFromThreads() {
    std::vector<std::thread> threads;
    for (const char letter : {'a', 'b', 'c', 'd', 'e', 'f', 'g', 'h'}) {
        threads.emplace_back([letter] {
            for (int line = 0; line < 50; ++line) log(std::string(10'000, letter));
        });
    }
    for (std::thread& thread : threads) thread.join();
}

}  // namespace

int main(int, char** argv) {
    platform::beginLog();
    const std::string what = argv[1];
    if (what == "line-and-wait") {
        log("here");
        getchar();
    } else if (what == "odd-bytes") {
        log(std::string_view("nul \0 invalid \xFF\xFE end", 20));
        log("");
    } else if (what == "controls") {
        log("\x1B[2J\r", "\x7F \t \xC2\x9B \xC3\xA9");
    } else if (what == "line-endings") {
        log("CR LF\r\n", "LF\nCR\rLF CR\n\r");
    } else if (what == "threads") {
        logFromThreads();
    } else if (what == "strangers") {
        std::printf("printed\n");
        std::fflush(stdout);
        if (write(STDOUT_FILENO, "written\n", 8) != 8) return 1;
        if (std::system("echo a child") != 0) return 1;
        log("logged");
    } else {
        for (int line = 0; line < 1'000; ++line) log("a line that nobody reads");
    }
}
