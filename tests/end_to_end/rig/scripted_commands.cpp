// Preloaded into the program under test: for each of the three hardware commands it starts the script of the same path
// in the folder that SCRIPTED_COMMANDS names. It needs no privilege, and other programs start as usual.
#include <dlfcn.h>
#include <spawn.h>

#include <cstdlib>
#include <string>

namespace {

bool isScripted(const std::string& path) {
    return path == "/usr/sbin/sysctl" || path == "/usr/sbin/system_profiler" || path == "/bin/df";
}

}  // namespace

extern "C" int posix_spawn(pid_t* process, const char* path, const posix_spawn_file_actions_t* actions,
                           const posix_spawnattr_t* attributes, char* const arguments[], char* const environment[]) {
    static const auto original = reinterpret_cast<decltype(&posix_spawn)>(dlsym(RTLD_NEXT, "posix_spawn"));
    const char* const folder = std::getenv("SCRIPTED_COMMANDS");
    const std::string started = folder != nullptr && isScripted(path) ? std::string(folder) + path : path;
    return original(process, started.c_str(), actions, attributes, arguments, environment);
}
