#include "tests/end_to_end/rig/namespaces.h"

#include <net/if.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fstream>

#include "tests/support/descriptor.h"

namespace end_to_end {

using testSupport::Descriptor;

namespace {

using Failure = std::optional<std::string>;

std::string failed(const std::string& what) { return what + ": " + std::strerror(errno); }

bool writeTo(const char* path, const std::string& text) {
    std::ofstream file(path);
    file << text << std::flush;
    return file.good();
}

// The user keeps their own number, so that the program under test does not believe it runs as root.
Failure keepIdentity(uid_t user, gid_t group) {
    const auto mapping = [](auto id) { return std::to_string(id) + " " + std::to_string(id) + " 1\n"; };
    if (!writeTo("/proc/self/setgroups", "deny")) return failed("/proc/self/setgroups");
    if (!writeTo("/proc/self/uid_map", mapping(user))) return failed("/proc/self/uid_map");
    if (!writeTo("/proc/self/gid_map", mapping(group))) return failed("/proc/self/gid_map");
    return std::nullopt;
}

// Ends as `child` did, after reaping it and every orphan that ends before it.
[[noreturn]] void endLike(pid_t child) {
    int status = 0;
    pid_t ended = 0;
    do {
        ended = wait(&status);
    } while (ended != child && (ended > 0 || errno == EINTR));
    if (WIFEXITED(status)) std::_Exit(WEXITSTATUS(status));
    std::_Exit(128 + WTERMSIG(status));
}

// Two generations: the first process of a process namespace is one that signals do not end, so it only keeps house.
Failure continueInProcessNamespace() {
    const pid_t first = fork();
    if (first < 0) return failed("fork");
    if (first > 0) endLike(first);

    prctl(PR_SET_PDEATHSIG, SIGKILL);  // The kernel ends everything in the namespace with its first process.
    const pid_t second = fork();
    if (second < 0) return failed("fork");
    if (second > 0) endLike(second);
    return std::nullopt;
}

// X servers find a free display number with the help of sockets in this folder and of the network namespace; with only
// one of the two private, two servers would take the same number and the later one remove the earlier one's socket.
Failure hideSocketsOfOtherDisplays() {
    const char* const folder = "/tmp/.X11-unix";
    if (mkdir(folder, 0777) == 0) chmod(folder, 01777);
    if (mount("tmpfs", folder, "tmpfs", 0, "mode=1777") != 0) return failed(std::string("mount ") + folder);
    return std::nullopt;
}

// Each X server writes its keyboard down here for a moment, in a file named after its display alone.
Failure hideKeyboardsOfOtherDisplays() {
    const char* const folder = "/var/lib/xkb";
    if (access(folder, F_OK) != 0) return std::nullopt;
    if (mount("tmpfs", folder, "tmpfs", 0, "mode=0777") != 0) return failed(std::string("mount ") + folder);
    return std::nullopt;
}

Failure makeMountsOwn() {
    if (mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0) return failed("mount --make-rprivate /");
    if (mount("proc", "/proc", "proc", MS_NOSUID | MS_NODEV | MS_NOEXEC, nullptr) != 0) return failed("mount /proc");
    if (Failure failure = hideSocketsOfOtherDisplays()) return failure;
    return hideKeyboardsOfOtherDisplays();
}

Failure raiseLoopback() {
    const Descriptor socket(::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0));
    ifreq request{};
    std::strcpy(request.ifr_name, "lo");
    if (ioctl(socket.number(), SIOCGIFFLAGS, &request) != 0) return failed("reading the state of lo");
    request.ifr_flags = static_cast<short>(request.ifr_flags | IFF_UP);
    if (ioctl(socket.number(), SIOCSIFFLAGS, &request) != 0) return failed("raising lo");
    return std::nullopt;
}

}  // namespace

std::optional<std::string> enterOwnNamespaces(Network network) {
    const uid_t user = geteuid();
    const gid_t group = getegid();
    int wanted = CLONE_NEWNS | CLONE_NEWPID;
    if (network == Network::own) wanted |= CLONE_NEWNET;
    if (user != 0) wanted |= CLONE_NEWUSER;
    if (unshare(wanted) != 0) return failed("unshare");

    Failure failure;
    if (user != 0) failure = keepIdentity(user, group);
    if (!failure) failure = continueInProcessNamespace();
    if (!failure) failure = makeMountsOwn();
    if (!failure && network == Network::own) failure = raiseLoopback();
    return failure;
}

}  // namespace end_to_end
