#include "tests/fakes/fakes.h"

#include <condition_variable>
#include <cstdlib>
#include <deque>
#include <mutex>
#include <thread>

#include "platform/application.h"
#include "platform/browser.h"
#include "platform/date.h"
#include "platform/log.h"
#include "platform/machine_uuid.h"
#include "platform/process.h"
#include "platform/user_defaults.h"
#include "platform/uuid.h"

namespace fakes {

namespace {

std::recursive_mutex mutex;

void happened(std::string event) {
    const std::lock_guard lock(mutex);
    machine().events.push_back(std::move(event));
}

// One thread for all requests, like the real session.
class Session {
  public:
    static Session& shared() {
        static Session session;
        return session;
    }

    ~Session() {
        post(nullptr);
        thread_.join();
    }

    void post(std::function<void()> work) {
        const std::lock_guard lock(mutex_);
        works_.push_back(std::move(work));
        changed_.notify_all();
    }

    void waitUntilIdle() {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [&] { return works_.empty(); });
    }

  private:
    void run() {
        std::unique_lock lock(mutex_);
        for (;;) {
            changed_.wait(lock, [&] { return !works_.empty(); });
            const std::function<void()> work = works_.front();
            if (!work) return;
            lock.unlock();
            work();
            lock.lock();
            works_.pop_front();
            changed_.notify_all();
        }
    }

    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<std::function<void()>> works_;  // The first one is running.
    std::thread thread_{[this] { run(); }};
};

std::optional<platform::Work> next(std::vector<platform::Work>& queue) {
    const std::lock_guard lock(mutex);
    if (queue.empty()) return std::nullopt;
    platform::Work work = std::move(queue.front());
    queue.erase(queue.begin());
    return work;
}

void runAll(std::vector<platform::Work>& queue) {
    while (const auto work = next(queue)) (*work)();
}

}  // namespace

platform::HttpResult answered(int statusCode, std::string body) {
    return platform::HttpAnswer{statusCode, std::move(body)};
}

platform::HttpResult failed(std::string description, std::string details) {
    return platform::HttpError{std::move(description), std::move(details)};
}

Machine& machine() {
    static Machine& theMachine = *new Machine;  // Never destroyed, since the session's thread may outlive main().
    return theMachine;
}

void waitForSession() { Session::shared().waitUntilIdle(); }

void reset() {
    waitForSession();
    machine() = Machine();
}

void runMainQueue() { runAll(machine().mainQueue); }

void runBackground() {
    std::thread([] { runAll(machine().background); }).join();
}

}  // namespace fakes

namespace platform {

using fakes::machine;

std::optional<std::string> standardOutputOf(const std::string& path, std::span<const std::string> arguments) {
    std::string commandLine = path;
    for (const std::string& argument : arguments) commandLine += " " + argument;
    const std::lock_guard lock(fakes::mutex);
    machine().commandsRun.push_back(commandLine);
    const auto output = machine().commands.find(commandLine);
    if (output == machine().commands.end()) return std::nullopt;
    return output->second;
}

void httpSession::start(HttpRequest request, HttpCompletionHandler completionHandler) {
    const std::lock_guard lock(fakes::mutex);
    machine().requests.push_back(request);
    fakes::happened("request " + request.url.absoluteString());
    fakes::Session::shared().post([request = std::move(request), handler = std::move(completionHandler)] {
        handler(machine().website(request));
    });
}

bool openInBrowser(const Url& url) {
    if (url.scheme().empty()) return false;
    machine().pagesAsked.push_back(url.absoluteString());
    fakes::happened("open " + url.absoluteString());
    return machine().opensPages;
}

void application::run(const WindowDescription&) { std::abort(); }

void application::terminate() { ++machine().terminations; }

std::optional<std::string> platformUuid() {
    const std::lock_guard lock(fakes::mutex);
    ++machine().registryQueries;
    return machine().platformUuid;
}

std::string randomUuid() {
    const std::lock_guard lock(fakes::mutex);
    std::string number = std::to_string(++machine().randomUuids);
    return "00000000-0000-4000-8000-" + std::string(12 - number.size(), '0') + number;
}

std::optional<std::string> userDefaults::string(const std::string& key) {
    const std::lock_guard lock(fakes::mutex);
    const auto value = machine().defaults.find(key);
    if (value == machine().defaults.end()) return std::nullopt;
    return value->second;
}

void userDefaults::setString(const std::string& key, const std::string& value) {
    const std::lock_guard lock(fakes::mutex);
    machine().beforeStore();
    machine().defaults[key] = value;
    fakes::happened("store " + key);
}

void userDefaults::setBool(const std::string& key, bool value) { setString(key, value ? "1" : "0"); }

std::string currentDate(const std::string& pattern) {
    const std::lock_guard lock(fakes::mutex);
    machine().datePatterns.push_back(pattern);
    std::vector<std::string>& dates = machine().dates;
    const std::string date = dates.front();
    if (dates.size() > 1) dates.erase(dates.begin());
    return date;
}

void mainQueue::async(Work work) {
    machine().whenPosting();
    const std::lock_guard lock(fakes::mutex);
    machine().mainQueue.push_back(std::move(work));
    fakes::happened("post");
}

void mainQueue::asyncAfter(std::chrono::milliseconds delay, Work work) {
    machine().delayed.emplace_back(delay, std::move(work));
}

void userInitiatedQueue::async(Work work) {
    const std::lock_guard lock(fakes::mutex);
    machine().background.push_back(std::move(work));
}

void beginLog() {}

void log(std::string_view message, std::string_view value) {
    const std::lock_guard lock(fakes::mutex);
    const std::string line = std::string(message).append(value);
    machine().log.push_back(line);
    fakes::happened("log " + line);
}

}  // namespace platform
