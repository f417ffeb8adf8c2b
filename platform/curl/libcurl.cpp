#include "platform/curl/libcurl.h"

#include <dlfcn.h>

namespace platform {

namespace {

#ifdef __APPLE__
// The system's own. A name without a path would also be looked for in the working directory.
constexpr const char* fileName = "/usr/lib/libcurl.4.dylib";
#else
constexpr const char* fileName = "libcurl.so.4";
#endif

constexpr unsigned version7_87 = 0x075700;

void* library = nullptr;  // Never closed: the session's thread uses it to the end.

}  // namespace

bool loadLibcurl() {
    if (library == nullptr) library = dlopen(fileName, RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr || libcurl().version_info == nullptr) return false;
    // Every version since 7.87 has all the functions.
    return libcurl().version_info(CURLVERSION_NOW)->version_num >= version7_87;
}

void* libcurlSymbol(const char* name) { return dlsym(library, name); }

const Libcurl& libcurl() {
    static const Libcurl functions;
    return functions;
}

}  // namespace platform
