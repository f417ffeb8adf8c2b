// libcurl, loaded when it is first needed.
//
// It needs more than twenty libraries of its own, which together take longer to load than the window takes to appear,
// and nothing is requested before that.
#pragma once

#include <curl/curl.h>

namespace platform {

// Loads the library; false when this machine has none, or one older than 7.87. May be called again.
[[nodiscard]] bool loadLibcurl();

// The address of a function in the loaded library.
[[nodiscard]] void* libcurlSymbol(const char* name);

template <typename Function>
[[nodiscard]] Function libcurlFunction(const char* name) {
    return reinterpret_cast<Function>(libcurlSymbol(name));
}

// The functions of libcurl by their own names, without "curl_".
struct Libcurl {
// NOLINTNEXTLINE(bugprone-macro-parentheses): a name that is declared has none.
#define LIBCURL_FUNCTION(name) decltype(&curl_##name) name = libcurlFunction<decltype(&curl_##name)>("curl_" #name)

    LIBCURL_FUNCTION(version_info);
    LIBCURL_FUNCTION(global_init);
    LIBCURL_FUNCTION(easy_init);
    LIBCURL_FUNCTION(easy_cleanup);
    LIBCURL_FUNCTION(easy_setopt);
    LIBCURL_FUNCTION(easy_getinfo);
    LIBCURL_FUNCTION(easy_strerror);
    LIBCURL_FUNCTION(multi_init);
    LIBCURL_FUNCTION(multi_cleanup);
    LIBCURL_FUNCTION(multi_add_handle);
    LIBCURL_FUNCTION(multi_remove_handle);
    LIBCURL_FUNCTION(multi_poll);
    LIBCURL_FUNCTION(multi_wakeup);
    LIBCURL_FUNCTION(multi_perform);
    LIBCURL_FUNCTION(multi_info_read);
    LIBCURL_FUNCTION(multi_strerror);
    LIBCURL_FUNCTION(share_init);
    LIBCURL_FUNCTION(share_setopt);
    LIBCURL_FUNCTION(slist_append);

#undef LIBCURL_FUNCTION
};

// To be called after loadLibcurl() has returned true.
[[nodiscard]] const Libcurl& libcurl();

}  // namespace platform
