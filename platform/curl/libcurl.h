// libcurl, loaded when it is needed.
//
// It comes with more than twenty libraries of its own, which together take longer to load than the window takes to
// appear, and nothing is requested before that.
#pragma once

#include <curl/curl.h>

namespace platform {

// The functions of libcurl by their own names, without "curl_".
struct Libcurl {
    decltype(&curl_global_init) global_init;
    decltype(&curl_easy_init) easy_init;
    decltype(&curl_easy_cleanup) easy_cleanup;
    decltype(&curl_easy_setopt) easy_setopt;
    decltype(&curl_easy_getinfo) easy_getinfo;
    decltype(&curl_easy_strerror) easy_strerror;
    decltype(&curl_multi_init) multi_init;
    decltype(&curl_multi_setopt) multi_setopt;
    decltype(&curl_multi_add_handle) multi_add_handle;
    decltype(&curl_multi_remove_handle) multi_remove_handle;
    decltype(&curl_multi_socket_action) multi_socket_action;
    decltype(&curl_multi_info_read) multi_info_read;
    decltype(&curl_multi_strerror) multi_strerror;
    decltype(&curl_share_init) share_init;
    decltype(&curl_share_setopt) share_setopt;
    decltype(&curl_slist_append) slist_append;
    decltype(&curl_slist_free_all) slist_free_all;
    decltype(&curl_url) url;
    decltype(&curl_url_cleanup) url_cleanup;
    decltype(&curl_url_set) url_set;
    decltype(&curl_url_get) url_get;
    decltype(&curl_free) free;
};

// Loads the library; false when this machine has none, or one of before 7.87. May be called again.
[[nodiscard]] bool loadLibcurl();

// After loadLibcurl() has returned true.
[[nodiscard]] const Libcurl& libcurl();

}  // namespace platform
