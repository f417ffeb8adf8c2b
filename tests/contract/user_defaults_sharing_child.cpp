// Uses the store together with others. "rounds N VALUE": in each round it looks at a key that nobody has set, waits for
// a byte of standard input, stores VALUE as the first and prints what the key has. "threads N": that many threads store
// the first value of one key, and a value each; prints what each of them found.
#include "platform/user_defaults.h"

#include <barrier>
#include <cstdio>
#include <string>
#include <thread>
#include <vector>

using namespace platform;

namespace {

void runRounds(int count, const std::string& value) {
    for (int round = 0; round < count; ++round) {
        const std::string key = "round" + std::to_string(round);
        std::printf("%s\n", userDefaults::string(key).value_or("none").c_str());
        std::fflush(stdout);
        std::getchar();
        std::printf("%s\n", userDefaults::setStringIfAbsent(key, value).c_str());
        std::fflush(stdout);
    }
}

void runThreads(int count) {
    std::vector<std::string> found(static_cast<std::size_t>(count));
    std::barrier start(count);
    std::vector<std::thread> threads;
    for (int thread = 0; thread < count; ++thread) {
        threads.emplace_back([thread, &start, &found] {
            const std::string name = std::to_string(thread);
            start.arrive_and_wait();
            const std::string first = userDefaults::setStringIfAbsent("first", "of " + name);
            userDefaults::setString("own" + name, "text " + name);
            userDefaults::setBool("flag" + name, thread % 2 == 0);
            const std::string own = userDefaults::string("own" + name).value_or("none");
            found[static_cast<std::size_t>(thread)] = first + ", " + own;
        });
    }
    for (std::thread& thread : threads) thread.join();
    for (const std::string& line : found) std::printf("%s\n", line.c_str());
}

}  // namespace

int main(int, char** argv) {
    const std::string what = argv[1];
    if (what == "rounds") runRounds(std::stoi(argv[2]), argv[3]);
    if (what == "threads") runThreads(std::stoi(argv[2]));
}
