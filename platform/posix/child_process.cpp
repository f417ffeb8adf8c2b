#include "platform/posix/child_process.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>

extern char** environ;

namespace platform {

namespace {

void setStream(posix_spawn_file_actions_t& actions, int stream, std::optional<int> descriptor) {
    if (!descriptor) {
        posix_spawn_file_actions_addopen(&actions, stream, "/dev/null", O_RDWR, 0);
    } else if (*descriptor != stream) {
        posix_spawn_file_actions_adddup2(&actions, *descriptor, stream);
    }
}

}  // namespace

std::optional<pid_t> startChild(const char* path, std::vector<const char*> arguments, const ChildStreams& streams) {
    arguments.insert(arguments.begin(), path);
    arguments.push_back(nullptr);

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    setStream(actions, STDIN_FILENO, streams.input);
    setStream(actions, STDOUT_FILENO, streams.output);
    setStream(actions, STDERR_FILENO, streams.error);

    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    short flags = POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF;
#ifdef __linux__
    posix_spawn_file_actions_addclosefrom_np(&actions, STDERR_FILENO + 1);
#else
    flags |= POSIX_SPAWN_CLOEXEC_DEFAULT;
    posix_spawn_file_actions_addinherit_np(&actions, STDIN_FILENO);
#endif
    posix_spawnattr_setflags(&attributes, flags);
    sigset_t signals;
    sigemptyset(&signals);
    posix_spawnattr_setsigmask(&attributes, &signals);
    sigfillset(&signals);
    posix_spawnattr_setsigdefault(&attributes, &signals);

    pid_t child = 0;
    const int failure = posix_spawn(&child, path, &actions, &attributes, const_cast<char**>(arguments.data()), environ);
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&actions);
    if (failure != 0) return std::nullopt;
    return child;
}

bool waitForExit(pid_t child) {
    int status = 0;
    while (waitpid(child, &status, 0) < 0) {
        if (errno != EINTR) return false;
    }
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

}  // namespace platform
