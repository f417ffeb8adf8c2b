// Fakes of the platform's services: they record calls, and the test sets their results.
#pragma once

#include <chrono>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/dispatch.h"
#include "platform/http.h"

namespace fakes {

[[nodiscard]] platform::HttpResult answered(int statusCode, std::string body);
[[nodiscard]] platform::HttpResult failed(std::string description, std::string details = "details");

// The state of all fakes; reset() restores it.
struct Machine {
    // process.h: the output for each command line ("/bin/df -h /"); other commands do not exist.
    std::map<std::string, std::string> commands;
    std::vector<std::string> commandsRun;

    // http.h: called for each request, on the session's thread.
    std::function<platform::HttpResult(const platform::HttpRequest&)> website = [](const auto&) {
        return failed("no website");
    };
    std::vector<platform::HttpRequest> requests;

    // browser.h
    bool opensPages = true;
    std::vector<std::string> pagesAsked;

    // application.h
    int terminations = 0;

    // machine_uuid.h and uuid.h
    std::optional<std::string> platformUuid = "PLATFORM-UUID";
    int registryQueries = 0;
    int randomUuids = 0;  // 00000000-0000-4000-8000-000000000001, ...000002

    // user_defaults.h: all values as text.
    std::map<std::string, std::string> defaults;
    std::function<void()> beforeStore = [] {};  // Called before each value is stored.

    // date.h: the result of each call in turn; the last one repeats.
    std::vector<std::string> dates = {"2026-11-20"};
    std::vector<std::string> datePatterns;

    // dispatch.h: the work that has not run yet.
    std::function<void()> whenPosting = [] {};  // Called before each post to the main queue, on the posting thread.
    std::vector<platform::Work> mainQueue;
    std::vector<std::pair<std::chrono::milliseconds, platform::Work>> delayed;
    std::vector<platform::Work> background;

    // log.h
    std::vector<std::string> log;

    // The events of all services, in order: "log ...", "request URL", "store KEY", "open URL", "post".
    std::vector<std::string> events;
};

[[nodiscard]] Machine& machine();

// Waits until all requests are answered and all handlers have returned.
void waitForSession();

// Waits for the session, then resets machine().
void reset();

// Run all work in the queue, including work posted meanwhile.
void runMainQueue();
void runBackground();  // On a thread of its own.

}  // namespace fakes
