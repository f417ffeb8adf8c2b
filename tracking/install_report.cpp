#include <array>
#include <memory>
#include <new>
#include <optional>
#include <semaphore>
#include <string_view>
#include <utility>
#include <variant>

#include "platform/http.h"
#include "platform/json.h"
#include "platform/log.h"
#include "platform/url.h"
#include "platform/user_defaults.h"
#include "tracking/app_tracker.h"
#include "tracking/report.h"

using platform::log;

namespace {

constexpr const char* installTrackedKey = "com.velmora.install_tracked";

// One report's outcome, held by the caller who waits and the handler together; the semaphore orders the two.
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
    // A number is not a boolean here, although 1 converts to one.
    const auto* created = std::get_if<bool>(answer->find("created"));
    if (created != nullptr && *created) {
        log("   📝 New install created");
    } else {
        log("   ♻️ Install already existed, updated");
    }
}

// An accepted status without readable text counts as not tracked, and nothing more is said of it.
void accept(const std::string* text, InstallReport& report) {
    if (text == nullptr) return;
    log("✅ Install tracked successfully");
    log("   Response: ", *text);
    logWhetherCreated(*text);
    platform::userDefaults::setBool(installTrackedKey, true);
    report.succeeded = true;
}

void refuse(const std::string& code, const std::string* text) {
    log("⚠️ Install tracking returned status: ", code);
    if (text != nullptr) log("   Response: ", *text);
}

void settle(const platform::HttpResult& result, InstallReport& report) {
    if (const auto* error = std::get_if<platform::HttpError>(&result)) {
        log("❌ Install tracking error: ", error->localizedDescription);
        log("   Error details: ", error->details);
        return;
    }
    const auto& answer = std::get<platform::HttpAnswer>(result);
    const std::string code = std::to_string(answer.statusCode);
    const std::string* text = readableBody(answer);
    log("📥 Response status: ", code);
    if (answer.isOk()) {
        accept(text, report);
    } else {
        refuse(code, text);
    }
}

void handleInstallResult(const platform::HttpResult& result, InstallReport& report) {
    try {
        settle(result, report);
    } catch (const std::bad_alloc&) {  // Not tracked, and the caller must not wait for ever.
    }
    report.completion.release();
}

}  // namespace

void AppTracker::trackInstall(const std::string& url) {
    const std::string deviceId = getDeviceId();
    const platform::JsonObject body = {{"platform", "mac"}, {"device_id", deviceId}};
    const std::string endpointText = reportEndpoint(url, "/api/track-install/");
    log("📤 Attempting to track install to: ", endpointText);
    log("📤 Device ID: ", deviceId);

    std::optional<std::string> data = platform::jsonDataFrom(body);
    const std::optional<platform::Url> endpoint = platform::Url::parse(endpointText);
    if (!data || !endpoint) {
        log("❌ Error: Could not create tracking JSON data or URL");
        log("   - JSON data: ", textOf(body));
        log("   - URL string: ", endpointText);
        return;
    }

    const auto report = std::make_shared<InstallReport>();
    platform::httpSession::start(
        {.url = *endpoint, .body = std::move(*data), .timeoutInterval = reportTimeoutInterval},
        [report](const platform::HttpResult& result) { handleInstallResult(result, *report); });
    report->completion.acquire();
    if (!report->succeeded) log("⚠️ Install tracking may have failed. Check the logs above.");
}
