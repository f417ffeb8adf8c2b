// One request and what comes in answer to it.
#pragma once

#include <curl/curl.h>

#include <array>
#include <chrono>
#include <memory>
#include <optional>
#include <string>

#include "platform/curl/libcurl.h"
#include "platform/http.h"

namespace platform {

// As it is received, and once it is decoded.
inline constexpr std::size_t largestBody = std::size_t{256} << 20;

// Each line of an answer counts as life, so that interim answers (100 to 199) without end would never time out.
inline constexpr int mostInterimAnswers = 16;

// What has come in answer so far. Of several answers (100 before 200, a redirect before its target's) the last counts.
struct Answer {
    int statusCode = 0;
    bool headerComplete = false;
    bool isTooLarge = false;
    std::string contentEncoding;
    std::string body;
};

struct FreeEasy {
    void operator()(CURL* easy) const { libcurl().easy_cleanup(easy); }
};
struct FreeList {
    void operator()(curl_slist* list) const { libcurl().slist_free_all(list); }
};

// libcurl holds pointers into it while the exchange goes on, so it stays where it is. For the session's thread alone.
struct Exchange {
    HttpRequest request;
    HttpCompletionHandler completionHandler;
    Answer answer;
    int interimAnswers = 0;
    std::optional<HttpError> error;
    std::chrono::steady_clock::time_point lastActivity;
    std::array<char, CURL_ERROR_SIZE> errorText{};
    std::unique_ptr<curl_slist, FreeList> headers;
    std::unique_ptr<CURL, FreeEasy> easy;  // Last, so that it goes before what it points to.

    Exchange(HttpRequest theRequest, HttpCompletionHandler handler)
        : request(std::move(theRequest)), completionHandler(std::move(handler)) {}
};

// How long the exchange may stand still, and until when, if nothing moves any more.
[[nodiscard]] std::chrono::seconds timeoutInterval(const HttpRequest& request);
[[nodiscard]] std::chrono::steady_clock::time_point deadline(const Exchange& exchange);

// Why a request is not even tried; absent for one that is.
[[nodiscard]] std::optional<HttpError> refusalOf(const HttpRequest& request);

// Makes the handle that libcurl is to carry out, once libcurl is loaded. `cookies` is shared by all exchanges.
[[nodiscard]] CURLcode prepare(Exchange& exchange, CURLSH* cookies);

// The error that an exchange that libcurl has ended with `result` comes to; absent when the answer is whole.
[[nodiscard]] std::optional<HttpError> errorOf(const Exchange& exchange, CURLcode result);

// Hands the error, or the answer with its body decoded, to the completion handler.
void deliver(Exchange& exchange);

}  // namespace platform
