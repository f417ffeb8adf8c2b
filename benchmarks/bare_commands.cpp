#include "benchmarks/bare_commands.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <vector>

extern char** environ;

namespace benchmarks {

namespace {

constexpr const char* sysctl = "/usr/sbin/sysctl";
constexpr const char* systemProfiler = "/usr/sbin/system_profiler";

void run(const std::vector<const char*>& command) {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) return;
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    std::vector<char*> arguments;
    for (const char* argument : command) arguments.push_back(const_cast<char*>(argument));
    arguments.push_back(nullptr);
    pid_t child = 0;
    const bool runs = posix_spawn(&child, command.front(), &actions, nullptr, arguments.data(), environ) == 0;
    posix_spawn_file_actions_destroy(&actions);
    close(ends[1]);
    std::array<char, 4096> buffer{};
    while (read(ends[0], buffer.data(), buffer.size()) > 0) continue;
    close(ends[0]);
    if (runs) waitpid(child, nullptr, 0);
}

}  // namespace

void runBareCommands() {
    run({sysctl, "-n", "machdep.cpu.brand_string"});
    run({systemProfiler, "SPHardwareDataType"});
    run({sysctl, "-n", "hw.memsize"});
    run({systemProfiler, "SPDisplaysDataType"});
    run({"/bin/df", "-h", "/"});
}

}  // namespace benchmarks
