#include "platform/curl/http_failure.h"

#include <algorithm>
#include <array>
#include <string>

namespace platform {

namespace {

struct CurlFailure {
    CURLcode result;
    Failure failure;
};

// CURLE_TOO_LARGE, which the headers of older versions do not have.
constexpr auto curlTooLarge = static_cast<CURLcode>(100);

constexpr std::array curlFailures{
    CurlFailure{CURLE_FAILED_INIT, unknownError},
    CurlFailure{CURLE_BAD_FUNCTION_ARGUMENT, badUrl},  // The only argument of ours it can reject: 8 MB and longer.
    CurlFailure{CURLE_URL_MALFORMAT, badUrl},
    CurlFailure{CURLE_OPERATION_TIMEDOUT, timedOut},
    CurlFailure{CURLE_COULDNT_RESOLVE_HOST, hostNotFound},
    CurlFailure{CURLE_COULDNT_RESOLVE_PROXY, hostNotFound},
    CurlFailure{CURLE_COULDNT_CONNECT, cannotConnect},
    CurlFailure{CURLE_PROXY, cannotConnect},
    CurlFailure{CURLE_PARTIAL_FILE, connectionLost},
    CurlFailure{CURLE_GOT_NOTHING, connectionLost},
    CurlFailure{CURLE_SEND_ERROR, connectionLost},
    CurlFailure{CURLE_RECV_ERROR, connectionLost},
    CurlFailure{CURLE_TOO_MANY_REDIRECTS, tooManyRedirects},
    CurlFailure{CURLE_UNSUPPORTED_PROTOCOL, cannotParse},  // Bytes that are no HTTP, or none that it knows.
    CurlFailure{CURLE_WEIRD_SERVER_REPLY, cannotParse},
    CurlFailure{CURLE_WRITE_ERROR, cannotParse},  // Our own functions that take the answer refused it.
    // A header line of more than 100 kB, by the name that older and newer versions have for it.
    CurlFailure{CURLE_OUT_OF_MEMORY, cannotParse},
    CurlFailure{curlTooLarge, cannotParse},
    CurlFailure{CURLE_BAD_CONTENT_ENCODING, cannotDecode},
    CurlFailure{CURLE_SSL_CONNECT_ERROR, tlsFailed},
    CurlFailure{CURLE_SSL_CACERT_BADFILE, tlsFailed},
    CurlFailure{CURLE_PEER_FAILED_VERIFICATION, untrustedServer},
};

// libcurl quotes what servers and URLs say, which may be anything: line breaks, control characters, no text at all.
std::string printable(std::string_view text) {
    std::string result(text);
    for (char& character : result) {
        if (character == '\r' || character == '\n' || character == '\t') character = ' ';
        if (character < ' ' || character > '~') character = '?';
    }
    result.erase(result.find_last_not_of(' ') + 1);
    return result;
}

}  // namespace

Failure failureOf(CURLcode result) {
    const auto* found = std::find_if(curlFailures.begin(), curlFailures.end(),
                                     [&](const CurlFailure& entry) { return entry.result == result; });
    return found == curlFailures.end() ? connectionLost : found->failure;
}

HttpError errorFor(Failure failure, std::string_view cause, std::string_view host) {
    std::string sentence(failure.sentence);
    const std::size_t hostPlace = sentence.find('%');
    if (hostPlace != std::string::npos) sentence.replace(hostPlace, 1, printable(host));
    const std::string details =
        "NSURLErrorDomain " + std::to_string(failure.code) + " \"" + sentence + "\" (" + printable(cause) + ")";
    return {sentence, details};
}

}  // namespace platform
