// The reports of an install and of a usage.
#include <array>
#include <chrono>
#include <memory>
#include <optional>
#include <semaphore>
#include <string_view>
#include <utility>
#include <variant>

#include "platform/date.h"
#include "platform/http.h"
#include "platform/json.h"
#include "platform/log.h"
#include "platform/text.h"
#include "platform/user_defaults.h"
#include "tracking/app_tracker.h"

using platform::log;

namespace {

constexpr std::chrono::seconds timeoutInterval{10};
constexpr const char* installTrackedKey = "com.velmora.install_tracked";
constexpr const char* lastTrackedDateKey = "com.velmora.last_tracked_date";
constexpr const char* datePattern = "yyyy-MM-dd";

// `url` without the slashes at its ends, followed by `path`. Nothing else is changed.
std::string endpointOf(const std::string& url, std::string_view path) {
    return std::string(platform::trimmedOfSlashes(url)).append(path);
}

// Null when the body is not UTF-8.
const std::string* readableBody(const platform::HttpAnswer& answer) {
    return platform::isUtf8(answer.body) ? &answer.body : nullptr;
}

// A report's outcome, shared by the waiting caller and the handler. The caller reads it after `completion`.
struct InstallReport {
    bool succeeded = false;
    std::binary_semaphore completion{0};
};

// The members as a person reads them: ["platform": "mac", "device_id": "..."].
std::string textOf(const platform::JsonObject& body) {
    std::string text;
    for (const auto& [key, value] : body.members()) {
        text += text.empty() ? "[" : ", ";
        text += "\"" + key + "\": \"" + std::get<std::string>(value) + "\"";
    }
    return text + "]";
}

void logWhetherCreated(const std::string& body) {
    constexpr std::array<std::string_view, 1> keys = {"created"};
    const std::optional<platform::JsonObject> answer = platform::jsonObjectFrom(body, keys);
    if (!answer) return;
    // Only true counts; boolean() would also accept 1.
    const auto* created = std::get_if<bool>(answer->find("created"));
    if (created != nullptr && *created) {
        log("   📝 New install created");
    } else {
        log("   ♻️ Install already existed, updated");
    }
}

void accept(const std::string& text, InstallReport& report) {
    log("✅ Install tracked successfully");
    log("   Response: ", text);
    logWhetherCreated(text);
    platform::userDefaults::setBool(installTrackedKey, true);
    report.succeeded = true;
}

void handleInstallResult(const platform::HttpResult& result, InstallReport& report) {
    // Wakes the caller on every path.
    struct Wake {
        InstallReport& report;
        ~Wake() { report.completion.release(); }
    } const wake{report};

    if (const auto* error = std::get_if<platform::HttpError>(&result)) {
        log("❌ Install tracking error: ", error->localizedDescription);
        log("   Error details: ", error->details);
        return;
    }
    const auto& answer = std::get<platform::HttpAnswer>(result);
    const std::string code = std::to_string(answer.statusCode);
    const std::string* text = readableBody(answer);
    log("📥 Response status: ", code);
    if (!answer.isOk()) {
        log("⚠️ Install tracking returned status: ", code);
        if (text != nullptr) log("   Response: ", *text);
    } else if (text != nullptr) {  // Otherwise the install counts as not tracked.
        accept(*text, report);
    }
}

void handleUsageResult(const platform::HttpResult& result) {
    if (const auto* error = std::get_if<platform::HttpError>(&result)) {
        log("❌ Usage tracking error: ", error->localizedDescription);
        return;
    }
    const auto& answer = std::get<platform::HttpAnswer>(result);
    const std::string* text = readableBody(answer);
    if (!answer.isOk()) {
        log("⚠️ Usage tracking returned status: ", std::to_string(answer.statusCode));
    } else if (text != nullptr) {
        log("✅ Usage tracked successfully");
    }
    if (text != nullptr) log("   Response: ", *text);
}

}  // namespace

void AppTracker::trackUsage(const std::string& url) {
    const std::string deviceId = getDeviceId();
    const std::string today = platform::currentDate(datePattern);
    const std::optional<std::string> lastDate = platform::userDefaults::string(lastTrackedDateKey);

    trackInstall(url);

    // The date decides nothing: both reports are sent every time.
    if (lastDate != today) platform::userDefaults::setString(lastTrackedDateKey, today);
    trackUsageOnly(url, deviceId);
}

void AppTracker::trackInstall(const std::string& url) {
    const std::string deviceId = getDeviceId();
    const platform::JsonObject body = {{"platform", "mac"}, {"device_id", deviceId}};
    const std::string endpoint = endpointOf(url, "/api/track-install/");
    log("📤 Attempting to track install to: ", endpoint);
    log("📤 Device ID: ", deviceId);

    std::optional<platform::HttpRequest> request = platform::jsonRequest(endpoint, body, timeoutInterval);
    if (!request) {
        log("❌ Error: Could not create tracking JSON data or URL");
        log("   - JSON data: ", textOf(body));
        log("   - URL string: ", endpoint);
        return;
    }

    const auto report = std::make_shared<InstallReport>();
    platform::httpSession::start(
        std::move(*request), [report](const platform::HttpResult& result) { handleInstallResult(result, *report); });
    report->completion.acquire();
    if (!report->succeeded) log("⚠️ Install tracking may have failed. Check the logs above.");
}

void AppTracker::trackUsageOnly(const std::string& url, const std::string& deviceId) {
    // Read again, because the install report may have been answered after midnight.
    const platform::JsonObject body = {{"device_id", deviceId}, {"date", platform::currentDate(datePattern)}};
    const std::string endpoint = endpointOf(url, "/api/track-usage/");
    log("📤 Attempting to track usage to: ", endpoint);

    std::optional<platform::HttpRequest> request = platform::jsonRequest(endpoint, body, timeoutInterval);
    if (!request) {
        log("❌ Error: Could not create usage tracking JSON data or URL");
        return;
    }
    platform::httpSession::start(std::move(*request), handleUsageResult);
}
