// Errors with the codes and sentences of macOS, which readers of the log know.
#pragma once

#include <curl/curl.h>

#include <string_view>

#include "platform/http.h"

namespace platform {

struct Failure {
    int code;
    std::string_view sentence;
};

inline constexpr Failure unknownError{-1, "unknown error"};
inline constexpr Failure badUrl{-1000, "bad URL"};
inline constexpr Failure timedOut{-1001, "The request timed out."};
inline constexpr Failure unsupportedUrl{-1002, "unsupported URL"};
inline constexpr Failure hostNotFound{-1003, "A server with the specified hostname could not be found."};
inline constexpr Failure cannotConnect{-1004, "Could not connect to the server."};
inline constexpr Failure connectionLost{-1005, "The network connection was lost."};
inline constexpr Failure tooManyRedirects{-1007, "too many HTTP redirects"};
inline constexpr Failure offline{-1009, "The Internet connection appears to be offline."};
inline constexpr Failure cannotDecode{-1015, "cannot decode raw data"};
inline constexpr Failure cannotParse{-1017, "cannot parse response"};
inline constexpr Failure tooLarge{-1103, "resource exceeds maximum size"};
inline constexpr Failure tlsFailed{-1200, "A TLS error caused the secure connection to fail."};
// The % is the place of the host.
inline constexpr Failure untrustedServer{
    -1202,
    "The certificate for this server is invalid. You might be connecting to a server "
    "that is pretending to be “%” which could put your confidential information at risk."};

// The failure that a result of libcurl's other than CURLE_OK means by itself.
[[nodiscard]] Failure failureOf(CURLcode result);

// `cause` is the detailed reason; `host` replaces the % in the sentence.
[[nodiscard]] HttpError errorFor(Failure failure, std::string_view cause, std::string_view host = {});

}  // namespace platform
