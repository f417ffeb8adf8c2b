#include "platform/curl/http_exchange.h"

#include <algorithm>
#include <cctype>
#include <exception>
#include <new>
#include <string_view>
#include <utility>

#include "platform/curl/content_coding_zlib.h"
#include "platform/curl/http_failure.h"
#include "platform/curl/network_interfaces.h"

namespace platform {

namespace {

std::string lowerCased(std::string_view text) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(),
                   [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
    return result;
}

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view blanks = " \t\r\n";
    const std::size_t first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

bool isFollowed(int statusCode) {
    return statusCode == 301 || statusCode == 302 || statusCode == 303 || statusCode == 307 || statusCode == 308;
}

// A request is about to go out: the first, or one that a redirect or a challenge has led to.
int requestBegins(void* userData, char*, char*, int, int) {
    Answer& answer = static_cast<Exchange*>(userData)->answer;
    // A redirect whose header the connection has cut is none, though libcurl sets out for its target.
    if (answer.statusCode != 0 && !answer.headerComplete) return CURL_PREREQFUNC_ABORT;
    answer = Answer();
    return CURL_PREREQFUNC_OK;
}

// A version and a status code of three digits. What else libcurl takes for one depends on its version.
bool isStatusLine(std::string_view line) {
    const auto isDigitAt = [line](std::size_t at) { return at < line.size() && line[at] >= '0' && line[at] <= '9'; };
    const std::size_t code = line.find_first_not_of(' ', line.find(' '));
    return isDigitAt(5) && isDigitAt(code) && isDigitAt(code + 1) && isDigitAt(code + 2) && !isDigitAt(code + 3);
}

void takeStatusLine(Exchange& exchange) {
    exchange.answer = Answer();
    long statusCode = 0;
    libcurl().easy_getinfo(exchange.easy.get(), CURLINFO_RESPONSE_CODE, &statusCode);
    exchange.answer.statusCode = static_cast<int>(statusCode);
    // What was sent to a website under TLS must not go on without it.
    const char* scheme = nullptr;
    libcurl().easy_getinfo(exchange.easy.get(), CURLINFO_SCHEME, &scheme);
    if (scheme != nullptr && lowerCased(scheme) == "https") {
        libcurl().easy_setopt(exchange.easy.get(), CURLOPT_REDIR_PROTOCOLS_STR, "https");
    }
    // libcurl would follow any answer that has a Location.
    const long follow = isFollowed(exchange.answer.statusCode) ? 1 : 0;
    libcurl().easy_setopt(exchange.easy.get(), CURLOPT_FOLLOWLOCATION, follow);
}

void takeHeaderField(Answer& answer, std::string_view line) {
    const std::size_t colon = line.find(':');
    if (colon == std::string_view::npos || lowerCased(line.substr(0, colon)) != "content-encoding") return;
    if (!answer.contentEncoding.empty()) answer.contentEncoding += ", ";
    answer.contentEncoding += trimmed(line.substr(colon + 1));
}

// A string that grows by doubling would for a while need room for three times a large body. Room that is never written
// to takes no memory.
void makeRoomForBody(std::string& body, std::size_t more) {
    constexpr std::size_t small = std::size_t{1} << 20;
    if (body.size() + more > small && body.capacity() < largestBody) body.reserve(largestBody);
}

// Called for each line of each header, the blank one at its end included, and for the trailer of a chunked body.
std::size_t takeHeaderLine(char* bytes, std::size_t, std::size_t count, void* userData) try {
    auto& exchange = *static_cast<Exchange*>(userData);
    const std::string_view line(bytes, count);
    if (line.starts_with("HTTP/")) {
        if (!isStatusLine(line)) return 0;
        takeStatusLine(exchange);
        if (exchange.answer.statusCode < 200 && ++exchange.interimAnswers > mostInterimAnswers) return 0;
    } else if (exchange.answer.headerComplete) {
        return count;
    } else if (trimmed(line).empty()) {
        exchange.answer.headerComplete = exchange.answer.statusCode >= 200;
    } else {
        takeHeaderField(exchange.answer, line);
    }
    return count;
} catch (const std::exception&) {
    return 0;  // Out of memory: libcurl ends the exchange.
}

std::size_t takeBody(char* bytes, std::size_t, std::size_t count, void* exchange) try {
    Answer& answer = static_cast<Exchange*>(exchange)->answer;
    answer.isTooLarge = answer.body.size() + count > largestBody;
    if (answer.isTooLarge) return 0;
    makeRoomForBody(answer.body, count);
    answer.body.append(bytes, count);
    return count;
} catch (const std::exception&) {
    return 0;
}

bool addHeader(Exchange& exchange, const std::string& line) {
    curl_slist* const extended = libcurl().slist_append(exchange.headers.get(), line.c_str());
    if (extended == nullptr) return false;
    static_cast<void>(exchange.headers.release());
    exchange.headers.reset(extended);
    return true;
}

bool addHeaders(Exchange& exchange) {
    for (const auto& [name, value] : exchange.request.headers) {
        // A name with nothing behind its colon would mean that the field is not wanted.
        const std::string rest = value.empty() ? ";" : ": " + value;
        if (!addHeader(exchange, name + rest)) return false;
    }
    // libcurl's own decoding fails on an answer in a coding that it does not know, instead of handing it over as it is.
    // And it would ask for permission before it sends a large body, which many servers never give.
    return addHeader(exchange, "Accept-Encoding: gzip, deflate") && addHeader(exchange, "Expect:");
}

std::string hostAskedLast(const Exchange& exchange) {
    const char* url = nullptr;
    libcurl().easy_getinfo(exchange.easy.get(), CURLINFO_EFFECTIVE_URL, &url);
    const std::unique_ptr<CURLU, decltype(&curl_url_cleanup)> parts(libcurl().url(), libcurl().url_cleanup);
    char* host = nullptr;
    if (url == nullptr || libcurl().url_set(parts.get(), CURLUPART_URL, url, 0) != CURLUE_OK) return {};
    if (libcurl().url_get(parts.get(), CURLUPART_HOST, &host, 0) != CURLUE_OK) return {};
    const std::unique_ptr<char, decltype(&curl_free)> freed(host, libcurl().free);
    return host;
}

HttpError transportError(const Exchange& exchange, CURLcode result) {
    Failure failure = exchange.answer.isTooLarge ? tooLarge : failureOf(result);
    // With the answer read and no new request begun, it is the redirect that leads to what is not supported.
    if (result == CURLE_UNSUPPORTED_PROTOCOL && exchange.answer.headerComplete) failure = unsupportedUrl;
    if (result == CURLE_COULDNT_RESOLVE_HOST && !networkIsUp()) failure = offline;

    std::string cause = "curl " + std::to_string(result) + ": ";
    cause += exchange.errorText.front() == '\0' ? libcurl().easy_strerror(result) : exchange.errorText.data();
    return errorFor(failure, cause, hostAskedLast(exchange));
}

// Leaves the body as it is when it is in no coding, in one that is not known, or in several.
void decodeBody(Exchange& exchange) {
    Answer& answer = exchange.answer;
    const auto coding = contentCodingNamed(answer.contentEncoding);
    if (!coding || answer.body.empty()) return;
    std::variant<std::string, DecodingFailure> plain = DecodingFailure::broken;
    try {
        plain = decoded(*coding, answer.body, largestBody);
    } catch (const std::exception&) {
        // This machine's memory does not hold it.
    }
    if (const auto* failure = std::get_if<DecodingFailure>(&plain)) {
        exchange.error = errorFor(*failure == DecodingFailure::tooLarge ? tooLarge : cannotDecode,
                                  "content coding " + answer.contentEncoding);
    } else {
        answer.body = std::move(std::get<std::string>(plain));
    }
}

}  // namespace

// Kept small enough for the sum with any moment to be one, too.
std::chrono::seconds timeoutInterval(const HttpRequest& request) {
    using std::chrono::seconds;
    return std::clamp(request.timeoutInterval, seconds(0), seconds(std::chrono::hours(7 * 24)));
}

std::chrono::steady_clock::time_point deadline(const Exchange& exchange) {
    return exchange.lastActivity + timeoutInterval(exchange.request);
}

std::optional<HttpError> refusalOf(const HttpRequest& request) {
    const std::string scheme = request.url.scheme();
    if (scheme.empty()) return errorFor(unsupportedUrl, "the URL has no scheme");
    if (scheme != "http" && scheme != "https") return errorFor(unsupportedUrl, "scheme " + scheme);
    // libcurl would take the first part of the path for the host.
    if (request.url.host().empty()) return errorFor(hostNotFound, "the URL has no host");
    if (request.method != "GET" && request.method != "POST") return errorFor(unknownError, "method " + request.method);
    return std::nullopt;
}

CURLcode prepare(Exchange& exchange, CURLSH* cookies) {
    exchange.easy.reset(libcurl().easy_init());
    if (!exchange.easy || !addHeaders(exchange)) return CURLE_FAILED_INIT;

    CURLcode result = CURLE_OK;
    const auto set = [&](CURLoption option, auto value) {
        if (result == CURLE_OK) result = libcurl().easy_setopt(exchange.easy.get(), option, value);
    };

    set(CURLOPT_URL, exchange.request.url.absoluteString().c_str());
    set(CURLOPT_PATH_AS_IS, 1L);
    set(CURLOPT_PROTOCOLS_STR, "http,https");
    set(CURLOPT_REDIR_PROTOCOLS_STR, "http,https");
    set(CURLOPT_MAXREDIRS, 16L);
    if (exchange.request.method == "POST") {
        set(CURLOPT_POST, 1L);  // Not as a custom method, which redirects would not turn into GET.
        set(CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(exchange.request.body.size()));
        set(CURLOPT_POSTFIELDS, exchange.request.body.data());
    }
    set(CURLOPT_HTTPHEADER, exchange.headers.get());
    set(CURLOPT_COOKIEFILE, "");
    set(CURLOPT_SHARE, cookies);
    // With more than one way allowed, the credentials of a URL wait for the challenge that names one.
    set(CURLOPT_HTTPAUTH, static_cast<long>(CURLAUTH_BASIC | CURLAUTH_DIGEST));

    // A connection that served before may be gone by now, and libcurl would then send the request a second time. With
    // one request to a connection HTTP/2 has nothing to offer, and it brings repetitions of its own.
    set(CURLOPT_FRESH_CONNECT, 1L);
    set(CURLOPT_FORBID_REUSE, 1L);
    set(CURLOPT_HTTP_VERSION, long{CURL_HTTP_VERSION_1_1});
    set(CURLOPT_PROXY, "");  // None, whatever the environment says.
    set(CURLOPT_SSLVERSION, long{CURL_SSLVERSION_TLSv1_2});
    // So that each address of a host gets its share of the time.
    set(CURLOPT_CONNECTTIMEOUT_MS,
        static_cast<long>(std::chrono::milliseconds(timeoutInterval(exchange.request)).count()));
    set(CURLOPT_QUICK_EXIT, 1L);  // To give up does not mean to wait for a name server.
    set(CURLOPT_NOSIGNAL, 1L);

    set(CURLOPT_PREREQFUNCTION, requestBegins);
    set(CURLOPT_PREREQDATA, &exchange);
    set(CURLOPT_HEADERFUNCTION, takeHeaderLine);
    set(CURLOPT_HEADERDATA, &exchange);
    set(CURLOPT_WRITEFUNCTION, takeBody);
    set(CURLOPT_WRITEDATA, &exchange);
    set(CURLOPT_ERRORBUFFER, exchange.errorText.data());
    return result;
}

std::optional<HttpError> errorOf(const Exchange& exchange, CURLcode result) {
    if (result != CURLE_OK) return transportError(exchange, result);
    // libcurl is content with a connection that closes in the middle of the header.
    if (!exchange.answer.headerComplete) return errorFor(connectionLost, "the connection closed within the header");
    return std::nullopt;
}

void deliver(Exchange& exchange) try {
    if (!exchange.error) decodeBody(exchange);
    if (exchange.error) return exchange.completionHandler(std::nullopt, std::nullopt, std::move(exchange.error));
    const HttpResponse response{exchange.answer.statusCode};
    exchange.completionHandler(std::move(exchange.answer.body), response, std::nullopt);
} catch (const std::bad_alloc&) {
    // The other exchanges go on.
}

}  // namespace platform
