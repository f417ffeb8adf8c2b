// Sends requests and checks their results.
#pragma once

#include <chrono>
#include <future>
#include <optional>
#include <string>
#include <thread>

#include "platform/http.h"
#include "tests/support/scripted_server.h"

namespace httpContract {

inline constexpr std::chrono::seconds longestWait{60};

struct Result {
    std::optional<platform::HttpAnswer> answer;
    std::optional<platform::HttpError> error;
    std::thread::id thread;  // The thread of the handler.
};

// A second call of the handler would throw and end the test program.
[[nodiscard]] std::future<Result> send(platform::HttpRequest request);

Result resultOf(std::future<Result> future);
Result resultOf(platform::HttpRequest request);

[[nodiscard]] platform::HttpRequest post(const std::string& url, std::string body = "{\"a\":1}",
                                         std::chrono::seconds timeoutInterval = std::chrono::seconds(30));

void expectAnswer(const Result& result, int statusCode, const std::string& body);
void expectError(const Result& result, int code, const std::string& localizedDescription);
void expectTimedOut(const Result& result);
void expectConnectionLost(const Result& result);

// The answer that redirects to `location`.
[[nodiscard]] std::string redirectTo(int statusCode, const std::string& location);

}  // namespace httpContract
