// HTTP by libcurl's multi interface, driven by one thread: the delivery queue.
//
// The thread waits for its sockets itself instead of leaving that to libcurl, because only so does it see every single
// sign of life of an exchange: libcurl's own limits don't count header bytes, or count averages over several seconds.
#include "platform/http.h"

#include <fcntl.h>
#include <ifaddrs.h>
#include <net/if.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <map>
#include <memory>
#include <mutex>
#include <string_view>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

#include "platform/curl/content_coding_zlib.h"
#include "platform/curl/libcurl.h"

namespace platform {

namespace {

using Clock = std::chrono::steady_clock;

// Failures

struct Failure {
    int code;
    std::string_view sentence;
};

constexpr Failure unknownError{-1, "unknown error"};
constexpr Failure badUrl{-1000, "bad URL"};
constexpr Failure timedOut{-1001, "The request timed out."};
constexpr Failure unsupportedUrl{-1002, "unsupported URL"};
constexpr Failure hostNotFound{-1003, "A server with the specified hostname could not be found."};
constexpr Failure cannotConnect{-1004, "Could not connect to the server."};
constexpr Failure connectionLost{-1005, "The network connection was lost."};
constexpr Failure tooManyRedirects{-1007, "too many HTTP redirects"};
constexpr Failure offline{-1009, "The Internet connection appears to be offline."};
constexpr Failure cannotDecode{-1015, "cannot decode raw data"};
constexpr Failure cannotParse{-1017, "cannot parse response"};
constexpr Failure tlsFailed{-1200, "A TLS error caused the secure connection to fail."};
// The % is the place of the host.
constexpr Failure untrustedServer{
    -1202,
    "The certificate for this server is invalid. You might be connecting to a server "
    "that is pretending to be “%” which could put your confidential information at risk."};

struct CurlFailure {
    CURLcode result;
    Failure failure;
};

constexpr std::array curlFailures{
    CurlFailure{CURLE_FAILED_INIT, unknownError},
    CurlFailure{CURLE_BAD_FUNCTION_ARGUMENT, badUrl},  // The only argument of ours it can reject: 8 MB and longer.
    CurlFailure{CURLE_URL_MALFORMAT, badUrl},
    CurlFailure{CURLE_OPERATION_TIMEDOUT, timedOut},
    CurlFailure{CURLE_COULDNT_RESOLVE_HOST, hostNotFound},
    CurlFailure{CURLE_COULDNT_CONNECT, cannotConnect},
    CurlFailure{CURLE_PARTIAL_FILE, connectionLost},
    CurlFailure{CURLE_GOT_NOTHING, connectionLost},
    CurlFailure{CURLE_SEND_ERROR, connectionLost},
    CurlFailure{CURLE_RECV_ERROR, connectionLost},
    CurlFailure{CURLE_TOO_MANY_REDIRECTS, tooManyRedirects},
    CurlFailure{CURLE_UNSUPPORTED_PROTOCOL, cannotParse},  // Bytes that are no HTTP, or none that it knows.
    CurlFailure{CURLE_WEIRD_SERVER_REPLY, cannotParse},
    CurlFailure{CURLE_WRITE_ERROR, cannotParse},    // Our own functions that take the answer refused it.
    CurlFailure{CURLE_OUT_OF_MEMORY, cannotParse},  // So it calls a header line of more than 100 kB.
    CurlFailure{CURLE_BAD_CONTENT_ENCODING, cannotDecode},
    CurlFailure{CURLE_SSL_CONNECT_ERROR, tlsFailed},
    CurlFailure{CURLE_SSL_CACERT_BADFILE, tlsFailed},
    CurlFailure{CURLE_PEER_FAILED_VERIFICATION, untrustedServer},
};

Failure failureOf(CURLcode result) {
    const auto* found = std::find_if(curlFailures.begin(), curlFailures.end(),
                                     [&](const CurlFailure& entry) { return entry.result == result; });
    return found == curlFailures.end() ? connectionLost : found->failure;
}

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

HttpError errorFor(Failure failure, std::string_view cause, std::string_view host = {}) {
    std::string sentence(failure.sentence);
    const std::size_t hostPlace = sentence.find('%');
    if (hostPlace != std::string::npos) sentence.replace(hostPlace, 1, printable(host));
    const std::string details =
        "NSURLErrorDomain " + std::to_string(failure.code) + " \"" + sentence + "\" (" + printable(cause) + ")";
    return {failure.code, sentence, details};
}

bool reachesBeyondThisMachine(const sockaddr* address) {
    if (address == nullptr) return false;
    if (address->sa_family == AF_INET) return true;
    if (address->sa_family != AF_INET6) return false;
    // macOS gives a link-local address to interfaces that lead nowhere.
    sockaddr_in6 address6{};
    std::memcpy(&address6, address, sizeof address6);
    return !IN6_IS_ADDR_LINKLOCAL(&address6.sin6_addr);
}

bool networkIsUp() {
    ifaddrs* interfaces = nullptr;
    if (getifaddrs(&interfaces) != 0) return true;
    const std::unique_ptr<ifaddrs, decltype(&freeifaddrs)> freed(interfaces, freeifaddrs);
    for (const ifaddrs* interface = interfaces; interface != nullptr; interface = interface->ifa_next) {
        const bool running = (interface->ifa_flags & IFF_UP) != 0 && (interface->ifa_flags & IFF_RUNNING) != 0;
        const bool loopback = (interface->ifa_flags & IFF_LOOPBACK) != 0;
        if (running && !loopback && reachesBeyondThisMachine(interface->ifa_addr)) return true;
    }
    return false;
}

// One exchange

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

// What has come in answer so far. Of several answers (100 before 200, a redirect before its target's) the last counts.
struct Answer {
    int statusCode = 0;
    bool headerComplete = false;
    std::string contentEncoding;
    std::string body;
};

struct FreeEasy {
    void operator()(CURL* easy) const { libcurl().easy_cleanup(easy); }
};
struct FreeList {
    void operator()(curl_slist* list) const { libcurl().slist_free_all(list); }
};

// libcurl holds pointers into it while the exchange goes on, so it stays where it is.
struct Exchange {
    HttpRequest request;
    HttpCompletionHandler completionHandler;
    Answer answer;
    std::optional<HttpError> error;
    Clock::time_point lastActivity;
    std::array<char, CURL_ERROR_SIZE> errorText{};
    std::unique_ptr<curl_slist, FreeList> headers;
    std::unique_ptr<CURL, FreeEasy> easy;  // Last, so that it goes before what it points to.

    Exchange(HttpRequest theRequest, HttpCompletionHandler handler)
        : request(std::move(theRequest)), completionHandler(std::move(handler)) {}
};

// Kept small enough for the sum with any moment to be one, too.
std::chrono::seconds timeoutInterval(const HttpRequest& request) {
    using std::chrono::seconds;
    return std::clamp(request.timeoutInterval, seconds(0), seconds(std::chrono::hours(7 * 24)));
}

Clock::time_point deadline(const Exchange& exchange) {
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

// A request is about to go out: the first, or one that a redirect or a challenge has led to.
int requestBegins(void* userData, char*, char*, int, int) {
    Answer& answer = static_cast<Exchange*>(userData)->answer;
    // A redirect whose header the connection has cut is none, though libcurl sets out for its target.
    if (answer.statusCode != 0 && !answer.headerComplete) return CURL_PREREQFUNC_ABORT;
    answer = Answer();
    return CURL_PREREQFUNC_OK;
}

void takeStatusLine(Exchange& exchange) {
    exchange.answer = Answer();
    long statusCode = 0;
    libcurl().easy_getinfo(exchange.easy.get(), CURLINFO_RESPONSE_CODE, &statusCode);
    exchange.answer.statusCode = static_cast<int>(statusCode);
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

// So that a large body is not copied over and over while it grows. What a server announces it need not send.
void makeRoomForBody(Exchange& exchange) {
    constexpr curl_off_t most = curl_off_t{128} << 20;
    curl_off_t announced = 0;
    libcurl().easy_getinfo(exchange.easy.get(), CURLINFO_CONTENT_LENGTH_DOWNLOAD_T, &announced);
    if (announced > 0 && announced <= most) exchange.answer.body.reserve(static_cast<std::size_t>(announced));
}

// Called for each line of each header, the blank one at its end included, and for the trailer of a chunked body.
std::size_t takeHeaderLine(char* bytes, std::size_t, std::size_t count, void* userData) try {
    auto& exchange = *static_cast<Exchange*>(userData);
    const std::string_view line(bytes, count);
    if (line.starts_with("HTTP/")) {
        // libcurl takes a line that goes on with anything but a version for a success.
        if (line.size() < 6 || std::isdigit(static_cast<unsigned char>(line[5])) == 0) return 0;
        takeStatusLine(exchange);
    } else if (exchange.answer.headerComplete) {
        return count;
    } else if (trimmed(line).empty()) {
        exchange.answer.headerComplete = exchange.answer.statusCode >= 200;
        makeRoomForBody(exchange);
    } else {
        takeHeaderField(exchange.answer, line);
    }
    return count;
} catch (const std::exception&) {
    return 0;  // Out of memory: libcurl ends the exchange.
}

std::size_t takeBody(char* bytes, std::size_t, std::size_t count, void* exchange) try {
    static_cast<Exchange*>(exchange)->answer.body.append(bytes, count);
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
    Failure failure = failureOf(result);
    // With the answer read and no new request begun, it is the redirect that leads to what is not supported.
    if (result == CURLE_UNSUPPORTED_PROTOCOL && exchange.answer.headerComplete) failure = unsupportedUrl;
    if (result == CURLE_COULDNT_RESOLVE_HOST && !networkIsUp()) failure = offline;

    std::string cause = "curl " + std::to_string(result) + ": ";
    cause += exchange.errorText.front() == '\0' ? libcurl().easy_strerror(result) : exchange.errorText.data();
    return errorFor(failure, cause, hostAskedLast(exchange));
}

std::optional<HttpError> errorOf(const Exchange& exchange, CURLcode result) {
    if (result != CURLE_OK) return transportError(exchange, result);
    // libcurl is content with a connection that closes in the middle of the header.
    if (!exchange.answer.headerComplete) return errorFor(connectionLost, "the connection closed within the header");
    return std::nullopt;
}

// Leaves the body as it is when it is in no coding, in one that is not known, or in several.
void decodeBody(Exchange& exchange) {
    Answer& answer = exchange.answer;
    const auto coding = contentCodingNamed(answer.contentEncoding);
    if (!coding || answer.body.empty()) return;
    std::optional<std::string> plain;
    try {
        plain = decoded(*coding, answer.body);
    } catch (const std::exception&) {
        // It is too large for this machine's memory.
    }
    if (!plain) exchange.error = errorFor(cannotDecode, "content coding " + answer.contentEncoding);
    answer.body = std::move(plain).value_or("");
}

void deliver(Exchange& exchange) {
    if (!exchange.error) decodeBody(exchange);
    if (exchange.error) return exchange.completionHandler(std::nullopt, std::nullopt, std::move(exchange.error));
    const HttpResponse response{exchange.answer.statusCode};
    exchange.completionHandler(std::move(exchange.answer.body), response, std::nullopt);
}

// The session

class Session {
  public:
    static Session& shared() {
        // Never destroyed: its thread goes on to the end of the process.
        static Session& session = *new Session;
        return session;
    }

    void start(HttpRequest request, HttpCompletionHandler completionHandler) {
        {
            const std::lock_guard lock(mutex_);
            if (!running_) running_ = launch();
            if (running_) {
                requested_.push_back(std::make_unique<Exchange>(std::move(request), std::move(completionHandler)));
                wake();
                return;
            }
        }
        completionHandler(std::nullopt, std::nullopt, errorFor(unknownError, "the session did not start"));
    }

  private:
    struct WatchedSocket {
        CURL* easy;
        short events;
    };

    // What it has got so far when it fails is there for the next try.
    [[nodiscard]] bool launch() try {
        if (!openWakePipe()) return false;
        std::thread([this] { run(); }).detach();
        return true;
    } catch (const std::system_error&) {
        return false;
    }

    [[nodiscard]] bool openWakePipe() {
        std::array<int, 2> ends{};
        if (wakeReader_ >= 0) return true;
        if (pipe(ends.data()) != 0) return false;
        for (const int end : ends) {
            fcntl(end, F_SETFD, FD_CLOEXEC);
            fcntl(end, F_SETFL, O_NONBLOCK);
        }
        wakeReader_ = ends[0];
        wakeWriter_ = ends[1];
        return true;
    }

    void wake() const {
        // A full pipe wakes as well.
        [[maybe_unused]] const ssize_t count = write(wakeWriter_, "", 1);
    }

    // The delivery queue's thread, from here on.

    void run() {
        // A write to a connection that the other side has closed raises a signal, which by default ends the process.
        // Besides, the threads that look names up inherit this.
        sigset_t all;
        sigfillset(&all);
        pthread_sigmask(SIG_BLOCK, &all, nullptr);
        for (;;) {
            const std::vector<pollfd> watched = waitForEvents();
            moveOn(watched);
            for (const auto& exchange : std::exchange(finished_, {})) deliver(*exchange);
        }
    }

    [[nodiscard]] bool prepareLibrary() {
        if (multi_ != nullptr) return true;
        if (!loadLibcurl()) return false;
        if (libcurl().global_init(CURL_GLOBAL_DEFAULT) != CURLE_OK) return false;
        if (cookies_ == nullptr) cookies_ = libcurl().share_init();
        // No other thread touches the cookies, so that no lock is needed.
        if (libcurl().share_setopt(cookies_, CURLSHOPT_SHARE, CURL_LOCK_DATA_COOKIE) != CURLSHE_OK) return false;
        multi_ = libcurl().multi_init();
        if (multi_ == nullptr) return false;
        libcurl().multi_setopt(multi_, CURLMOPT_SOCKETFUNCTION, watchSocket);
        libcurl().multi_setopt(multi_, CURLMOPT_SOCKETDATA, this);
        libcurl().multi_setopt(multi_, CURLMOPT_TIMERFUNCTION, setTimer);
        libcurl().multi_setopt(multi_, CURLMOPT_TIMERDATA, this);
        // The TLS library, which has just registered its own such function, tears itself down when the process exits,
        // no matter who is in the middle of it. This one runs before, and keeps the thread out from then on.
        std::atexit([] { shared().library_.lock(); });
        return true;
    }

    [[nodiscard]] std::vector<pollfd> waitForEvents() {
        std::vector<pollfd> watched{{wakeReader_, POLLIN, 0}};
        for (const auto& [number, watch] : sockets_) watched.push_back({number, watch.events, 0});
        const int count = poll(watched.data(), static_cast<nfds_t>(watched.size()), pollTimeout());
        polledAt_ = Clock::now();
        if (count < 0) watched.clear();
        drainWakePipe();
        return watched;
    }

    [[nodiscard]] int pollTimeout() const {
        std::optional<Clock::time_point> next = timerAt_;
        for (const auto& [easy, exchange] : exchanges_) {
            next = std::min(next.value_or(Clock::time_point::max()), deadline(*exchange));
        }
        if (!next) return -1;
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(*next - Clock::now()).count();
        return static_cast<int>(std::clamp<long long>(left, 0, 3'600'000));
    }

    void drainWakePipe() const {
        std::array<char, 256> bytes;
        while (read(wakeReader_, bytes.data(), bytes.size()) > 0) continue;
    }

    // Everything that has to do with libcurl. It waits for nothing, so that exiting needn't wait for it either.
    void moveOn(const std::vector<pollfd>& watched) {
        const std::lock_guard lock(library_);
        for (const pollfd& entry : watched) {
            if (entry.revents != 0) actOn(entry.fd);
        }
        if (timerAt_ && *timerAt_ <= polledAt_) {
            timerAt_.reset();
            act(CURL_SOCKET_TIMEOUT);
        }
        beginRequested();
        collectFinished();
        giveUpOnSilent();
    }

    void actOn(curl_socket_t number) {
        const auto watch = sockets_.find(number);
        if (watch == sockets_.end()) return;  // The wake pipe, or closed since for the sake of another socket.
        const auto exchange = exchanges_.find(watch->second.easy);
        if (exchange != exchanges_.end()) exchange->second->lastActivity = polledAt_;
        act(number);
    }

    void act(curl_socket_t number) {
        int running = 0;
        libcurl().multi_socket_action(multi_, number, 0, &running);
    }

    void beginRequested() {
        std::vector<std::unique_ptr<Exchange>> requested;
        {
            const std::lock_guard lock(mutex_);
            requested.swap(requested_);
        }
        for (auto& exchange : requested) {
            exchange->error = begin(*exchange);
            if (exchange->error) {
                finish(std::move(exchange));
            } else {
                CURL* const easy = exchange->easy.get();
                exchanges_.emplace(easy, std::move(exchange));
            }
        }
    }

    [[nodiscard]] std::optional<HttpError> begin(Exchange& exchange) {
        if (auto refusal = refusalOf(exchange.request)) return refusal;
        if (!prepareLibrary()) return errorFor(unknownError, "libcurl is missing");
        if (const CURLcode result = prepare(exchange, cookies_); result != CURLE_OK) {
            return transportError(exchange, result);
        }
        exchange.lastActivity = Clock::now();
        if (const CURLMcode result = libcurl().multi_add_handle(multi_, exchange.easy.get()); result != CURLM_OK) {
            return errorFor(unknownError, libcurl().multi_strerror(result));
        }
        return std::nullopt;
    }

    static int watchSocket(CURL* easy, curl_socket_t number, int what, void* session, void*) {
        auto& sockets = static_cast<Session*>(session)->sockets_;
        const bool reads = what == CURL_POLL_IN || what == CURL_POLL_INOUT;
        const bool writes = what == CURL_POLL_OUT || what == CURL_POLL_INOUT;
        if (what == CURL_POLL_REMOVE) {
            sockets.erase(number);
        } else {
            sockets[number] = {easy, static_cast<short>((reads ? POLLIN : 0) | (writes ? POLLOUT : 0))};
        }
        return 0;
    }

    static int setTimer(CURLM*, long milliseconds, void* session) {
        auto& timerAt = static_cast<Session*>(session)->timerAt_;
        timerAt.reset();
        if (milliseconds >= 0) timerAt = Clock::now() + std::chrono::milliseconds(milliseconds);
        return 0;
    }

    void collectFinished() {
        if (multi_ == nullptr) return;  // Nothing but requests that were refused at once.
        int left = 0;
        while (const CURLMsg* message = libcurl().multi_info_read(multi_, &left)) {
            if (message->msg != CURLMSG_DONE) continue;
            const CURLcode result = message->data.result;
            auto exchange = takeOut(message->easy_handle);
            exchange->error = errorOf(*exchange, result);
            finish(std::move(exchange));
        }
    }

    // Judged by the moment of the last poll, which saw what had come by then: while a handler ran, bytes may have
    // arrived that nobody has looked at yet.
    void giveUpOnSilent() {
        std::vector<CURL*> silent;
        for (const auto& [easy, exchange] : exchanges_) {
            if (deadline(*exchange) <= polledAt_) silent.push_back(easy);
        }
        for (CURL* const easy : silent) {
            auto exchange = takeOut(easy);
            const auto seconds = std::to_string(timeoutInterval(exchange->request).count());
            exchange->error = errorFor(timedOut, "nothing moved for " + seconds + " s");
            finish(std::move(exchange));
        }
    }

    [[nodiscard]] std::unique_ptr<Exchange> takeOut(CURL* easy) {
        libcurl().multi_remove_handle(multi_, easy);
        return std::move(exchanges_.extract(easy).mapped());
    }

    void finish(std::unique_ptr<Exchange> exchange) {
        exchange->easy.reset();
        finished_.push_back(std::move(exchange));
    }

    std::mutex mutex_;
    std::vector<std::unique_ptr<Exchange>> requested_;  // By the mutex.
    bool running_ = false;                              // By the mutex.
    int wakeReader_ = -1;
    int wakeWriter_ = -1;

    std::mutex library_;  // Held by the thread while it is in libcurl.
    CURLM* multi_ = nullptr;
    CURLSH* cookies_ = nullptr;
    std::map<CURL*, std::unique_ptr<Exchange>> exchanges_;
    std::map<curl_socket_t, WatchedSocket> sockets_;
    std::optional<Clock::time_point> timerAt_;
    Clock::time_point polledAt_;
    std::vector<std::unique_ptr<Exchange>> finished_;  // With their handlers still to be called.
};

}  // namespace

void httpSession::start(HttpRequest request, HttpCompletionHandler completionHandler) {
    Session::shared().start(std::move(request), std::move(completionHandler));
}

}  // namespace platform
