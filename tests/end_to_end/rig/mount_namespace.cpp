#include "tests/end_to_end/rig/mount_namespace.h"

#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <fstream>

namespace end_to_end {

namespace {

bool writeTo(const char* path, const std::string& text) {
    std::ofstream file(path);
    file << text << std::flush;
    return file.good();
}

// Maps the user to the same id, so that the program under test does not run as root.
bool keepIdentity(uid_t user, gid_t group) {
    const auto mapping = [](auto id) { return std::to_string(id) + " " + std::to_string(id) + " 1\n"; };
    return writeTo("/proc/self/setgroups", "deny") && writeTo("/proc/self/uid_map", mapping(user)) &&
           writeTo("/proc/self/gid_map", mapping(group));
}

bool enter() {
    const uid_t user = geteuid();
    const gid_t group = getegid();
    if (unshare(CLONE_NEWNS | (user == 0 ? 0 : CLONE_NEWUSER)) != 0) return false;
    if (user != 0 && !keepIdentity(user, group)) return false;
    // Keeps our mounts out of the parent namespace.
    return mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

}  // namespace

std::optional<std::string> whyNoMountNamespace() {
    static const auto refusal = []() -> std::optional<std::string> {
        if (enter()) return std::nullopt;
        const char* const permission =
            geteuid() == 0 ? "CAP_SYS_ADMIN, and a root folder that is a mount point" : "user namespaces";
        return std::string("needs mounts of its own (") + permission + "): " + std::strerror(errno);
    }();
    return refusal;
}

}  // namespace end_to_end
