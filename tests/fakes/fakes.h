// Fakes of the platform's services: they keep what they are asked, and the test says what they answer.
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

// One machine for one test: made anew by reset().
struct Machine {
    // process.h: what a command line ("/bin/df -h /") prints; one that is not here cannot be started.
    std::map<std::string, std::string> commands;
    std::vector<std::string> commandsRun;

    // http.h: asked for each request, on the session's thread.
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

    // user_defaults.h: everything as text.
    std::map<std::string, std::string> defaults;
    std::function<void()> beforeStore = [] {};  // What others do just before a value is stored.

    // date.h: the texts of one call after another, the last one for all that follow.
    std::vector<std::string> dates = {"2026-11-20"};
    std::vector<std::string> datePatterns;

    // dispatch.h: posted and not run yet.
    std::function<void()> whenPosting = [] {};  // Called before each post to the main queue, on the thread that posts.
    std::vector<platform::Work> mainQueue;
    std::vector<std::pair<std::chrono::milliseconds, platform::Work>> delayed;
    std::vector<platform::Work> background;

    // log.h
    std::vector<std::string> log;

    // What happened across services, in order: "log ...", "request PATH", "store KEY", "open URL", "post".
    std::vector<std::string> events;
};

[[nodiscard]] Machine& machine();

// Waits until every request has been answered and every answer handled.
void waitForSession();

// The same, then starts afresh.
void reset();

// Runs everything posted so far and everything that this posts.
void runMainQueue();
void runBackground();  // On a thread of its own.

}  // namespace fakes
