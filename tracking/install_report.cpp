#include <array>
#include <memory>
#include <new>
#include <optional>
#include <semaphore>
#include <string_view>
#include <utility>

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
constexpr int ok = 200;

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

void settle(const std::optional<std::string>& body, const std::optional<platform::HttpResponse>& response,
            const std::optional<platform::HttpError>& error, InstallReport& report) {
    if (error) {
        log("❌ Install tracking error: ", error->localizedDescription);
        log("   Error details: ", error->details);
    } else if (response) {
        const std::string code = std::to_string(response->statusCode);
        const std::string* text = readable(body);
        log("📥 Response status: ", code);
        if (response->statusCode == ok) {
            accept(text, report);
        } else {
            refuse(code, text);
        }
    }
}

void handleInstallAnswer(const std::optional<std::string>& body, const std::optional<platform::HttpResponse>& response,
                         const std::optional<platform::HttpError>& error, InstallReport& report) {
    try {
        settle(body, response, error, report);
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
    platform::httpSession::start(reportRequest(*endpoint, std::move(*data)),
                                 [report](const auto& answerBody, const auto& response, const auto& error) {
                                     handleInstallAnswer(answerBody, response, error, *report);
                                 });
    report->completion.acquire();
    if (!report->succeeded) log("⚠️ Install tracking may have failed. Check the logs above.");
}
