// The desktop's opener, xdg-open(1).
//
// It is given the URL as it stands: the toolkit's own opening would rewrite it (host in lower case, escapes resolved)
// and would call every opener that starts a success, also one that finds no browser.
#include "platform/browser.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <future>
#include <memory>
#include <optional>
#include <string>
#include <system_error>
#include <thread>

extern char** environ;

namespace platform {

namespace {

// An opener that is still running after this long is a browser that it became, and counts as success.
constexpr std::chrono::seconds patience{1};

// A session of its own keeps the browser alive when this program ends; none of its output is ours to show.
std::optional<pid_t> startOpener(const std::string& address) {
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addclosefrom_np(&actions, STDERR_FILENO + 1);

    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    sigset_t signals;
    sigemptyset(&signals);
    posix_spawnattr_setsigmask(&attributes, &signals);
    sigfillset(&signals);
    posix_spawnattr_setsigdefault(&attributes, &signals);

    std::string name = "xdg-open";
    char* arguments[] = {name.data(), const_cast<char*>(address.c_str()), nullptr};
    pid_t opener = 0;
    const int failure = posix_spawnp(&opener, name.c_str(), &actions, &attributes, arguments, environ);
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&actions);
    if (failure != 0) return std::nullopt;
    return opener;
}

bool exitedWithSuccess(pid_t opener) {
    int status = 0;
    while (waitpid(opener, &status, 0) < 0) {
        if (errno != EINTR) return false;
    }
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

}  // namespace

bool openInBrowser(const Url& url) {
    if (url.scheme().empty()) return false;
    const std::optional<pid_t> opener = startOpener(url.absoluteString());
    if (!opener) return false;

    // The thread also sees a late opener off, so that none stays behind as a zombie.
    auto verdict = std::make_shared<std::promise<bool>>();
    std::future<bool> success = verdict->get_future();
    try {
        std::thread([verdict, opener] { verdict->set_value(exitedWithSuccess(*opener)); }).detach();
    } catch (const std::system_error&) {
        return true;  // It was started, and nobody is there to watch it.
    }
    return success.wait_for(patience) == std::future_status::timeout || success.get();
}

}  // namespace platform
