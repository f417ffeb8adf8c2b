#include "platform/curl/http_exchange.h"

#include <exception>
#include <new>
#include <utility>

#include "platform/curl/http_failure.h"
#include "platform/curl/network_interfaces.h"
#include "platform/curl/system_proxy.h"
#include "platform/large_text.h"

namespace platform {

namespace {

// As received, and as decoded.
constexpr std::size_t largestBody = std::size_t{256} << 20;

// Of one answer, its trailer included: libcurl keeps every line, and some versions know no limit for a trailer.
constexpr std::size_t largestHeader = std::size_t{1} << 20;

// Each header line counts as life, so interim answers (100 to 199) without end would never time out.
constexpr int mostInterimAnswers = 16;

bool isFollowed(int statusCode) {
    return statusCode == 301 || statusCode == 302 || statusCode == 303 || statusCode == 307 || statusCode == 308;
}

// A version and a status code of three digits. What else libcurl accepts depends on its version.
bool isStatusLine(std::string_view line) {
    const auto isDigitAt = [line](std::size_t at) { return at < line.size() && line[at] >= '0' && line[at] <= '9'; };
    const std::size_t code = line.find_first_not_of(' ', line.find(' '));
    return isDigitAt(5) && isDigitAt(code) && isDigitAt(code + 1) && isDigitAt(code + 2) && !isDigitAt(code + 3);
}

bool isBlank(std::string_view line) { return line.find_first_not_of(" \t\r\n") == std::string_view::npos; }

// Without the path, which after a redirect may hold characters that a Url must not have.
std::string hostIn(const std::string& url) {
    const std::optional<Url> root = Url::parse(url.substr(0, url.find_first_of("/?#", url.find("://") + 3)));
    return root ? root->host() : "";
}

HttpError tooLargeError() { return errorFor(tooLarge, "a body of more than 256 MiB, or a header of more than 1 MiB"); }

}  // namespace

Exchange::Exchange(HttpRequest request, HttpCompletionHandler completionHandler)
    : request_(std::move(request)), completionHandler_(std::move(completionHandler)) {}

Exchange& Exchange::of(CURL* handle) {
    char* exchange = nullptr;
    libcurl().easy_getinfo(handle, CURLINFO_PRIVATE, &exchange);
    return *reinterpret_cast<Exchange*>(exchange);
}

void Exchange::prepare(const Shared& shared) {
    lastActivity_ = Clock::now();
    if (auto error = refusal()) return fail(std::move(*error));
    easy_.reset(libcurl().easy_init());
    if (!easy_) return fail(errorFor(unknownError, "libcurl made no handle"));
    if (const CURLcode result = setOptions(shared); result != CURLE_OK) end(result);
}

std::optional<HttpError> Exchange::refusal() const {
    const std::string& scheme = request_.url.scheme();
    if (scheme.empty()) return errorFor(unsupportedUrl, "the URL has no scheme");
    if (scheme != "http" && scheme != "https") return errorFor(unsupportedUrl, "scheme " + scheme);
    // libcurl would take the first part of the path for the host.
    if (request_.url.host().empty()) return errorFor(hostNotFound, "the URL has no host");
    return std::nullopt;
}

CURLcode Exchange::setOptions(const Shared& shared) {
    CURLcode result = CURLE_OK;
    const auto set = [&](CURLoption option, auto value) {
        if (result == CURLE_OK) result = libcurl().easy_setopt(easy_.get(), option, value);
    };

    set(CURLOPT_URL, request_.url.absoluteString().c_str());
    set(CURLOPT_PATH_AS_IS, 1L);
    set(CURLOPT_PROTOCOLS_STR, "http,https");
    set(CURLOPT_REDIR_PROTOCOLS_STR, "http,https");
    set(CURLOPT_MAXREDIRS, 16L);
    set(CURLOPT_POST, 1L);
    set(CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(request_.body.size()));
    set(CURLOPT_POSTFIELDS, request_.body.data());
    set(CURLOPT_HTTPHEADER, shared.headers);
    set(CURLOPT_ACCEPT_ENCODING, "gzip, deflate");
    set(CURLOPT_COOKIEFILE, "");
    set(CURLOPT_SHARE, shared.cookies);
    // With more than one way allowed, the credentials of a URL wait for the challenge that names one.
    set(CURLOPT_HTTPAUTH, static_cast<long>(CURLAUTH_BASIC | CURLAUTH_DIGEST));

    // A connection that served before may be gone by now, and libcurl would then send the request a second time. With
    // one request to a connection HTTP/2 has no advantage, and it may repeat a request.
    set(CURLOPT_FRESH_CONNECT, 1L);
    set(CURLOPT_FORBID_REUSE, 1L);
    set(CURLOPT_HTTP_VERSION, long{CURL_HTTP_VERSION_1_1});
    // Those of the environment do not count: set options win over its variables.
    set(CURLOPT_PROXY, systemProxyFor(request_.url).c_str());
    set(CURLOPT_NOPROXY, "");
    set(CURLOPT_SSLVERSION, long{CURL_SSLVERSION_TLSv1_2});
    // So that each address of a host gets its share of the time.
    set(CURLOPT_CONNECTTIMEOUT_MS, static_cast<long>(std::chrono::milliseconds(request_.timeoutInterval).count()));
    set(CURLOPT_QUICK_EXIT, 1L);  // Giving up does not wait for a name server.
    set(CURLOPT_NOSIGNAL, 1L);

    set(CURLOPT_PREREQFUNCTION, requestBegins);
    set(CURLOPT_PREREQDATA, this);
    set(CURLOPT_HEADERFUNCTION, takeHeaderLine);
    set(CURLOPT_HEADERDATA, this);
    set(CURLOPT_WRITEFUNCTION, takeBody);
    set(CURLOPT_WRITEDATA, this);
    set(CURLOPT_ERRORBUFFER, errorText_.data());
    set(CURLOPT_PRIVATE, this);
    return result;
}

Exchange::Clock::time_point Exchange::deadline() const { return lastActivity_ + request_.timeoutInterval; }

void Exchange::check(Clock::time_point polledAt) {
    const auto bytesMoved = info<curl_off_t>(CURLINFO_SIZE_UPLOAD_T) + info<curl_off_t>(CURLINFO_SIZE_DOWNLOAD_T) +
                            info<long>(CURLINFO_REQUEST_SIZE) + info<long>(CURLINFO_HEADER_SIZE);
    if (isTooLarge()) {
        fail(tooLargeError());
    } else if (bytesMoved != bytesMoved_) {
        bytesMoved_ = bytesMoved;
        lastActivity_ = Clock::now();
    } else if (deadline() <= polledAt) {
        fail(errorFor(timedOut, "nothing moved for " + std::to_string(request_.timeoutInterval.count()) + " s"));
    }
}

bool Exchange::isTooLarge() const {
    return decodesToTooMuch_ || headerSize_ > largestHeader ||
           info<curl_off_t>(CURLINFO_SIZE_DOWNLOAD_T) > curl_off_t{largestBody};
}

void Exchange::forgetAnswer() {
    answer_ = HttpAnswer();
    headerIsComplete_ = false;
    headerSize_ = 0;
}

// A request is about to go out: the first, or one that a redirect or a challenge has led to.
int Exchange::requestBegins(void* exchange, char*, char*, int, int) {
    auto& self = *static_cast<Exchange*>(exchange);
    // libcurl follows a redirect even when the connection has cut its header.
    if (self.answer_.statusCode != 0 && !self.headerIsComplete_) return CURL_PREREQFUNC_ABORT;
    self.forgetAnswer();
    return CURL_PREREQFUNC_OK;
}

bool Exchange::takeStatusLine(std::string_view line) {
    if (!isStatusLine(line)) return false;
    forgetAnswer();
    answer_.statusCode = static_cast<int>(info<long>(CURLINFO_RESPONSE_CODE));
    if (answer_.statusCode < 200 && ++interimAnswers_ > mostInterimAnswers) return false;
    // What was sent over TLS must not be sent on without it.
    const char* scheme = info<const char*>(CURLINFO_SCHEME);
    if (scheme != nullptr && (scheme == std::string_view("https") || scheme == std::string_view("HTTPS"))) {
        libcurl().easy_setopt(easy_.get(), CURLOPT_REDIR_PROTOCOLS_STR, "https");
    }
    // libcurl would follow any answer that has a Location.
    libcurl().easy_setopt(easy_.get(), CURLOPT_FOLLOWLOCATION, isFollowed(answer_.statusCode) ? 1L : 0L);
    return true;
}

// Called for each line of each header, the blank one at its end included, and for the trailer of a chunked body.
std::size_t Exchange::takeHeaderLine(char* bytes, std::size_t, std::size_t count, void* exchange) {
    auto& self = *static_cast<Exchange*>(exchange);
    const std::string_view line(bytes, count);
    if (line.starts_with("HTTP/")) return self.takeStatusLine(line) ? count : 0;
    self.headerSize_ += count;
    if (self.isTooLarge()) return 0;
    if (isBlank(line) && self.answer_.statusCode >= 200) self.headerIsComplete_ = true;
    return count;
}

std::size_t Exchange::takeBody(char* bytes, std::size_t, std::size_t count, void* exchange) try {
    auto& self = *static_cast<Exchange*>(exchange);
    std::string& body = self.answer_.body;
    self.decodesToTooMuch_ = body.size() + count > largestBody;
    if (self.decodesToTooMuch_) return 0;
    appendPiece(body, {bytes, count}, largestBody);
    return count;
} catch (const std::exception&) {
    return 0;  // Out of memory: libcurl ends the exchange.
}

void Exchange::end(CURLcode result) {
    if (isTooLarge()) {
        fail(tooLargeError());
    } else if (result != CURLE_OK) {
        fail(transportError(result));
    } else if (!headerIsComplete_) {
        // libcurl accepts a connection that closes in the middle of the header.
        fail(errorFor(connectionLost, "the connection closed within the header"));
    } else {
        result_ = std::move(answer_);
    }
}

HttpError Exchange::transportError(CURLcode result) const {
    Failure failure = failureOf(result);
    // With the answer read and no new request begun, it is the redirect that leads to what is not supported.
    if (result == CURLE_UNSUPPORTED_PROTOCOL && headerIsComplete_) failure = unsupportedUrl;
    if (failure.code == hostNotFound.code && !networkIsUp()) failure = offline;

    std::string cause = "curl " + std::to_string(result) + ": ";
    cause += errorText_.front() == '\0' ? libcurl().easy_strerror(result) : errorText_.data();
    const char* const lastUrl = info<const char*>(CURLINFO_EFFECTIVE_URL);
    return errorFor(failure, cause, lastUrl == nullptr ? "" : hostIn(lastUrl));
}

void Exchange::deliver() try { completionHandler_(std::move(*result_)); } catch (const std::bad_alloc&) {
    // The other exchanges go on.
}

}  // namespace platform
