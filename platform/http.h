// HTTP requests.
#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <variant>

#include "platform/json.h"
#include "platform/url.h"

namespace platform {

// A JSON text, sent by POST with the header "Content-Type: application/json".
struct HttpRequest {
    Url url;
    std::string body;

    // The request fails after this time without a byte sent, a header line or a body byte. Each of these restarts the
    // interval, so a slow but steady answer has no limit. Name lookup and connecting together must not take longer.
    std::chrono::seconds timeoutInterval;
};

// A request that sends `body` to `url`. Absent when the body cannot be written as JSON or `url` is no URL.
[[nodiscard]] inline std::optional<HttpRequest> jsonRequest(const std::string& url, const JsonObject& body,
                                                            std::chrono::seconds timeoutInterval) {
    std::optional<std::string> data = jsonDataFrom(body);
    std::optional<Url> address = Url::parse(url);
    if (!data || !address) return std::nullopt;
    return HttpRequest{.url = std::move(*address), .body = std::move(*data), .timeoutInterval = timeoutInterval};
}

// A whole answer. Any status code is an answer, and an empty body is a body.
struct HttpAnswer {
    int statusCode = 0;
    std::string body;

    [[nodiscard]] bool isOk() const { return statusCode == 200; }
};

// Why no whole answer came.
struct HttpError {
    std::string localizedDescription;  // A sentence for people: "Could not connect to the server."
    std::string details;               // All that is known, on one line: domain, code, sentence, the library's words.
};

using HttpResult = std::variant<HttpAnswer, HttpError>;
using HttpCompletionHandler = std::function<void(HttpResult)>;

namespace httpSession {

// Starts `request` and returns at once. `completionHandler` is called exactly once, on the delivery queue: one thread
// of the session's own, neither the main thread nor the caller's, on which handlers run one after another. While one
// runs, other requests pause, and so do their timeouts; it may start further requests. A handler that throws
// std::bad_alloc ends, and the session goes on. Only when the session cannot begin (no thread, no HTTP library) is the
// handler called with an error on the caller's thread, before this returns.
//
// Only http and https are requested. Redirects 301, 302 and 303 are followed as GET without body, 307 and 308 as POST
// with the body, 16 in all at most; any other 3xx, or one that names no target, is an answer. A request is
// sent again only to follow a redirect, or when the server asks for the URL's credentials: a connection that drops is
// an error. Certificates and host names are verified. The proxy is the one that the system's settings name for the
// request's URL; those of the environment do not count. Cookies live as long as the process. Bodies in the content
// codings gzip and deflate arrive decoded; one that is cut short arrives as far as it could be decoded. An unknown
// coding is an error, and so are a body of more than 256 MiB, as received or as decoded, a header or trailer of more
// than 1 MiB, a 17th interim answer, and a redirect from https to http. Safe from any thread.
void start(HttpRequest request, HttpCompletionHandler completionHandler);

}  // namespace httpSession

}  // namespace platform
