// HTTP by libcurl's multi interface, driven by one thread: the delivery queue.
#include "platform/http.h"

#include <algorithm>
#include <csignal>
#include <list>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

#include "platform/curl/http_exchange.h"
#include "platform/curl/http_failure.h"
#include "platform/curl/libcurl.h"

namespace platform {

namespace {

using Clock = Exchange::Clock;

class Session {
  public:
    void start(HttpRequest request, HttpCompletionHandler completionHandler) {
        {
            const std::lock_guard lock(mutex_);
            if (isRunning_ || (prepareLibrary() && startThread())) {
                requested_.emplace_back(std::move(request), std::move(completionHandler));
                libcurl().multi_wakeup(multi_);
                return;
            }
        }
        completionHandler(errorFor(unknownError, "the session did not start"));
    }

  private:
    [[nodiscard]] bool prepareLibrary() {
        if (multi_ != nullptr) return true;
        if (!loadLibcurl() || libcurl().global_init(CURL_GLOBAL_DEFAULT) != CURLE_OK) return false;

        // Without a free descriptor libcurl makes a handle that nothing can wake.
        CURLM* const multi = libcurl().multi_init();
        if (multi == nullptr || libcurl().multi_wakeup(multi) != CURLM_OK) {
            libcurl().multi_cleanup(multi);
            return false;
        }

        // Only the session's thread touches the cookies, so libcurl needs no lock for them.
        shared_.cookies = libcurl().share_init();
        if (libcurl().share_setopt(shared_.cookies, CURLSHOPT_SHARE, CURL_LOCK_DATA_COOKIE) != CURLSHE_OK) return false;

        // Without the second line libcurl asks for permission before it sends a large body, which many servers never
        // give.
        shared_.headers = libcurl().slist_append(nullptr, "Content-Type: application/json");
        if (shared_.headers == nullptr || libcurl().slist_append(shared_.headers, "Expect:") == nullptr) return false;

        multi_ = multi;
        return true;
    }

    [[nodiscard]] bool startThread() try {
        std::thread([this] { run(); }).detach();
        isRunning_ = true;
        return true;
    } catch (const std::system_error&) {
        return false;
    }

    // The delivery queue's thread, from here on.

    [[noreturn]] void run() {
        // A write to a connection that the other side has closed raises a signal, which by default ends the process.
        // The threads that look names up inherit this.
        sigset_t all;
        sigfillset(&all);
        pthread_sigmask(SIG_BLOCK, &all, nullptr);
        for (;;) {
            libcurl().multi_poll(multi_, nullptr, 0, pollTimeout(), nullptr);
            const Clock::time_point polledAt = Clock::now();
            beginRequested();
            perform();
            for (Exchange& exchange : exchanges_) {
                if (!exchange.hasEnded()) exchange.check(polledAt);
            }
            deliverEnded();
        }
    }

    // Milliseconds to the next deadline; libcurl wakes earlier for timers of its own.
    [[nodiscard]] int pollTimeout() const {
        Clock::time_point next = Clock::now() + std::chrono::hours(1);
        for (const Exchange& exchange : exchanges_) next = std::min(next, exchange.deadline());
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(next - Clock::now()).count();
        return static_cast<int>(std::max<long long>(left, 0));
    }

    void beginRequested() {
        std::list<Exchange> requested;
        {
            const std::lock_guard lock(mutex_);
            requested.swap(requested_);
        }
        for (Exchange& exchange : requested) {
            exchange.prepare(shared_);
            if (exchange.hasEnded()) continue;
            const CURLMcode result = libcurl().multi_add_handle(multi_, exchange.handle());
            if (result != CURLM_OK) exchange.fail(errorFor(unknownError, libcurl().multi_strerror(result)));
        }
        exchanges_.splice(exchanges_.end(), requested);
    }

    void perform() {
        int count = 0;
        libcurl().multi_perform(multi_, &count);
        while (const CURLMsg* message = libcurl().multi_info_read(multi_, &count)) {
            if (message->msg == CURLMSG_DONE) Exchange::of(message->easy_handle).end(message->data.result);
        }
    }

    void deliverEnded() {
        std::list<Exchange> ended;
        for (auto next = exchanges_.begin(); next != exchanges_.end();) {
            const auto exchange = next++;
            if (exchange->hasEnded()) ended.splice(ended.end(), exchanges_, exchange);
        }
        const Clock::time_point begin = Clock::now();
        for (Exchange& exchange : ended) {
            libcurl().multi_remove_handle(multi_, exchange.handle());
            exchange.deliver();
        }
        for (Exchange& exchange : exchanges_) exchange.postponeDeadline(Clock::now() - begin);
    }

    std::mutex mutex_;
    std::list<Exchange> requested_;  // By the mutex.
    bool isRunning_ = false;         // By the mutex.

    // Made before the thread, and used by the thread alone; only multi_wakeup may be called by others.
    Exchange::Shared shared_;
    CURLM* multi_ = nullptr;
    std::list<Exchange> exchanges_;
};

}  // namespace

void httpSession::start(HttpRequest request, HttpCompletionHandler completionHandler) {
    static Session& session = *new Session;  // Never destroyed: its thread goes on to the end of the process.
    session.start(std::move(request), std::move(completionHandler));
}

}  // namespace platform
