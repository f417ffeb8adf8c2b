// One request and its answer.
#pragma once

#include <curl/curl.h>

#include <array>
#include <chrono>
#include <memory>
#include <optional>
#include <string_view>

#include "platform/curl/libcurl.h"
#include "platform/http.h"

namespace platform {

// Used by the session's thread only, once it is made. libcurl holds pointers into it, so it stays where it is.
class Exchange {
  public:
    using Clock = std::chrono::steady_clock;

    // What all exchanges have in common.
    struct Shared {
        CURLSH* cookies = nullptr;
        curl_slist* headers = nullptr;
    };

    Exchange(HttpRequest request, HttpCompletionHandler completionHandler);
    Exchange(const Exchange&) = delete;
    Exchange& operator=(const Exchange&) = delete;

    // Makes the handle that libcurl is to carry out, or ends the exchange with an error.
    void prepare(const Shared& shared);

    [[nodiscard]] CURL* handle() const { return easy_.get(); }

    // The exchange that a handle belongs to.
    [[nodiscard]] static Exchange& of(CURL* handle);

    // When the exchange times out if nothing moves until then.
    [[nodiscard]] Clock::time_point deadline() const;

    // Notes what has moved, and ends the exchange when it is too large or its deadline was before `polledAt`.
    void check(Clock::time_point polledAt);

    // Time in which the session handled other answers is not idle time.
    void postponeDeadline(Clock::duration by) { lastActivity_ += by; }

    void end(CURLcode result);
    void fail(HttpError error) { result_ = std::move(error); }
    [[nodiscard]] bool hasEnded() const { return result_.has_value(); }

    // Calls the completion handler. The exchange may then be destroyed, once its handle has left the multi handle.
    void deliver();

  private:
    struct FreeEasy {
        void operator()(CURL* easy) const { libcurl().easy_cleanup(easy); }
    };

    [[nodiscard]] CURLcode setOptions(const Shared& shared);
    [[nodiscard]] std::optional<HttpError> refusal() const;
    [[nodiscard]] HttpError transportError(CURLcode result) const;
    [[nodiscard]] bool isTooLarge() const;
    void forgetAnswer();
    [[nodiscard]] bool takeStatusLine(std::string_view line);

    template <typename Value>
    [[nodiscard]] Value info(CURLINFO what) const {
        Value value{};
        libcurl().easy_getinfo(easy_.get(), what, &value);
        return value;
    }

    // Called by libcurl.
    static int requestBegins(void* exchange, char*, char*, int, int);
    static std::size_t takeHeaderLine(char* bytes, std::size_t, std::size_t count, void* exchange);
    static std::size_t takeBody(char* bytes, std::size_t, std::size_t count, void* exchange);

    HttpRequest request_;
    HttpCompletionHandler completionHandler_;
    // What has come so far. Of several answers (100 before 200, a redirect before its target's) the last counts.
    HttpAnswer answer_;
    bool headerIsComplete_ = false;
    std::size_t headerSize_ = 0;
    bool decodesToTooMuch_ = false;
    int interimAnswers_ = 0;
    curl_off_t bytesMoved_ = 0;
    Clock::time_point lastActivity_;
    std::optional<HttpResult> result_;
    std::array<char, CURL_ERROR_SIZE> errorText_{};
    std::unique_ptr<CURL, FreeEasy> easy_;  // Destroyed before what it points to.
};

}  // namespace platform
