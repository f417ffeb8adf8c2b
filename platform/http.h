// HTTP requests.
#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/url.h"

namespace platform {

struct HttpRequest {
    Url url;
    std::string method = "GET";                                // Or "POST". Any other is an error.
    std::vector<std::pair<std::string, std::string>> headers;  // Name and value, sent in this order.
    std::string body;                                          // Bytes, sent by a POST with their Content-Length.

    // How long the exchange may stand still (looking the name up, connecting, sending, waiting, reading): whatever
    // moves starts the interval afresh, be it a single byte, so a slow but steady answer has no limit.
    std::chrono::seconds timeoutInterval{60};
};

struct HttpResponse {
    int statusCode = 0;
};

// Why no complete answer came. No status code is ever an error.
struct HttpError {
    int code = 0;                      // The code that macOS gives this failure in NSURLErrorDomain, such as -1004.
    std::string localizedDescription;  // A sentence for people: "Could not connect to the server."
    std::string details;               // All that is known, on one line: domain, code, sentence, the library's words.
};

// Either the whole answer (body bytes, empty ones included, and response; no error) or an error and no body. A response
// is absent when the answer was none of HTTP's.
using HttpCompletionHandler = std::function<void(std::optional<std::string> body, std::optional<HttpResponse> response,
                                                 std::optional<HttpError> error)>;

namespace httpSession {

// Starts `request` and returns at once. `completionHandler` is called exactly once, on the delivery queue: one thread
// of the session's own, neither the main thread nor the caller's, on which handlers run one after another. While one
// runs, no other exchange moves on, nor does its interval run out; it may start further requests. One that throws
// std::bad_alloc ends by that, and nothing else does. Only when the system has no thread to give is the handler called
// with an error by the caller's, before this returns.
//
// Only http and https are requested. Redirects 301, 302 and 303 are followed as GET without body, 307 and 308 with
// method and body kept, 16 in all at most; any other 3xx, or one that names no target, is an answer. Nothing is sent a
// second time but to follow a redirect, or with the URL's own credentials when the server asks for them: a connection
// that drops is an error. Certificates and host names are verified; proxies named by the environment are not used.
// Cookies live as long as the process. Bodies in the content codings gzip and deflate arrive decoded. A body of more
// than 256 MiB, as received or as decoded, is an error, and so is a redirect from https to http. Safe from any thread.
void start(HttpRequest request, HttpCompletionHandler completionHandler);

}  // namespace httpSession

}  // namespace platform
