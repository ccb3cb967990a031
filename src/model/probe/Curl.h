#pragma once

#include <curl/curl.h>

namespace portolan {

/// What is used of libcurl, under its own names without their prefix. The library is loaded by the first
/// redirect that leads away from this machine, which most programs never meet: with the 28 libraries behind
/// it, it takes 9 MB of memory.
struct Curl
{
    decltype(&::curl_easy_init) easy_init;
    decltype(&::curl_easy_setopt) easy_setopt;
    decltype(&::curl_easy_getinfo) easy_getinfo;
    decltype(&::curl_easy_cleanup) easy_cleanup;
    decltype(&::curl_multi_init) multi_init;
    decltype(&::curl_multi_setopt) multi_setopt;
    decltype(&::curl_multi_assign) multi_assign;
    decltype(&::curl_multi_add_handle) multi_add_handle;
    decltype(&::curl_multi_remove_handle) multi_remove_handle;
    decltype(&::curl_multi_socket_action) multi_socket_action;
    decltype(&::curl_multi_info_read) multi_info_read;
    decltype(&::curl_multi_cleanup) multi_cleanup;

    /// The library, ready for use; null where it is not installed. The first call takes its time. Any thread.
    [[nodiscard]] static const Curl *library();
};

} // namespace portolan
