#include "tests/end_to_end/rig/namespaces.h"

#include <net/if.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/mount.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
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

// Maps the user to the same id, so that the program under test does not run as root.
Failure keepIdentity(uid_t user, gid_t group) {
    const auto mapping = [](auto id) { return std::to_string(id) + " " + std::to_string(id) + " 1\n"; };
    if (!writeTo("/proc/self/setgroups", "deny")) return failed("/proc/self/setgroups");
    if (!writeTo("/proc/self/uid_map", mapping(user))) return failed("/proc/self/uid_map");
    if (!writeTo("/proc/self/gid_map", mapping(group))) return failed("/proc/self/gid_map");
    return std::nullopt;
}

// An X server finds a free display number by its sockets in this folder and on the network. If only one of the two were
// private, two servers would take the same number, and the second would remove the first one's socket.
Failure hideSocketsOfOtherDisplays() {
    const char* const folder = "/tmp/.X11-unix";
    if (mkdir(folder, 0777) == 0) chmod(folder, 01777);
    if (mount("tmpfs", folder, "tmpfs", 0, "mode=1777") != 0) return failed(std::string("mount ") + folder);
    return std::nullopt;
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

Failure enter() {
    const uid_t user = geteuid();
    const gid_t group = getegid();
    const int userNamespace = user == 0 ? 0 : CLONE_NEWUSER;
    if (unshare(CLONE_NEWNS | userNamespace) != 0) return failed("unshare");
    if (user != 0) {
        if (Failure failure = keepIdentity(user, group)) return failure;
    }
    // Keeps our mounts out of the parent namespace.
    if (mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0) return failed("mount --make-rprivate /");
    if (Failure failure = hideSocketsOfOtherDisplays()) return failure;
    // Last, because an early return after it would leave the process without a loopback interface.
    if (unshare(CLONE_NEWNET) != 0) return failed("unshare the network");
    return raiseLoopback();
}

std::optional<std::string> refusal = "enterOwnNamespaces() was not called";

}  // namespace

void enterOwnNamespaces() {
    refusal = enter();
    if (!refusal) return;
    const char* const permission =
        geteuid() == 0 ? "CAP_SYS_ADMIN, and a root folder that is a mount point" : "user namespaces";
    *refusal = std::string("needs mounts and a network of its own (") + permission + "): " + *refusal;
}

const std::optional<std::string>& whyNoOwnNamespaces() { return refusal; }

}  // namespace end_to_end
