// HTTP by libcurl's multi interface, driven by one thread: the delivery queue.
//
// The thread waits for its sockets itself instead of leaving that to libcurl, because only so does it see every single
// sign of life of an exchange: libcurl's own limits don't count header bytes, or count averages over several seconds.
#include "platform/http.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdlib>
#include <map>
#include <memory>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

#include "platform/curl/http_exchange.h"
#include "platform/curl/http_failure.h"
#include "platform/curl/libcurl.h"

namespace platform {

namespace {

using Clock = std::chrono::steady_clock;

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
            return errorOf(exchange, result);
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
