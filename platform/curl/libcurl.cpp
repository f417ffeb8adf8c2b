#include "platform/curl/libcurl.h"

#include <dlfcn.h>

namespace platform {

namespace {

#ifdef __APPLE__
// The system's own. By its name alone it would be looked for in the working directory, too.
constexpr const char* fileName = "/usr/lib/libcurl.4.dylib";
#else
constexpr const char* fileName = "libcurl.so.4";
#endif

Libcurl functions{};

template <typename Function>
bool find(void* library, const char* name, Function& function) {
    function = reinterpret_cast<Function>(dlsym(library, name));
    return function != nullptr;
}

bool isRecentEnough(void* library) {
    constexpr unsigned version7_87 = 0x075700;
    decltype(&curl_version_info) versionInfo = nullptr;
    return find(library, "curl_version_info", versionInfo) && versionInfo(CURLVERSION_NOW)->version_num >= version7_87;
}

bool findAll(void* library) {
    Libcurl& all = functions;
    return find(library, "curl_global_init", all.global_init) && find(library, "curl_easy_init", all.easy_init) &&
           find(library, "curl_easy_cleanup", all.easy_cleanup) && find(library, "curl_easy_setopt", all.easy_setopt) &&
           find(library, "curl_easy_getinfo", all.easy_getinfo) &&
           find(library, "curl_easy_strerror", all.easy_strerror) && find(library, "curl_multi_init", all.multi_init) &&
           find(library, "curl_multi_setopt", all.multi_setopt) &&
           find(library, "curl_multi_add_handle", all.multi_add_handle) &&
           find(library, "curl_multi_remove_handle", all.multi_remove_handle) &&
           find(library, "curl_multi_socket_action", all.multi_socket_action) &&
           find(library, "curl_multi_info_read", all.multi_info_read) &&
           find(library, "curl_multi_strerror", all.multi_strerror) &&
           find(library, "curl_share_init", all.share_init) && find(library, "curl_share_setopt", all.share_setopt) &&
           find(library, "curl_slist_append", all.slist_append) &&
           find(library, "curl_slist_free_all", all.slist_free_all) && find(library, "curl_url", all.url) &&
           find(library, "curl_url_cleanup", all.url_cleanup) && find(library, "curl_url_set", all.url_set) &&
           find(library, "curl_url_get", all.url_get) && find(library, "curl_free", all.free);
}

}  // namespace

bool loadLibcurl() {
    void* const library = dlopen(fileName, RTLD_NOW | RTLD_LOCAL);  // Never closed: threads use it to the end.
    return library != nullptr && isRecentEnough(library) && findAll(library);
}

const Libcurl& libcurl() { return functions; }

}  // namespace platform
