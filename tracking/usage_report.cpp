#include <optional>
#include <utility>
#include <variant>

#include "platform/date.h"
#include "platform/http.h"
#include "platform/json.h"
#include "platform/log.h"
#include "platform/url.h"
#include "platform/user_defaults.h"
#include "tracking/app_tracker.h"
#include "tracking/report.h"

using platform::log;

namespace {

constexpr const char* lastTrackedDateKey = "com.velmora.last_tracked_date";
constexpr const char* datePattern = "yyyy-MM-dd";

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

    // The date is only kept: both reports go out every time.
    if (lastDate != today) platform::userDefaults::setString(lastTrackedDateKey, today);
    trackUsageOnly(url, deviceId);
}

void AppTracker::trackUsageOnly(const std::string& url, const std::string& deviceId) {
    // Read again, because the install report may have been answered after midnight.
    const platform::JsonObject body = {{"device_id", deviceId}, {"date", platform::currentDate(datePattern)}};
    const std::string endpointText = reportEndpoint(url, "/api/track-usage/");
    log("📤 Attempting to track usage to: ", endpointText);

    std::optional<std::string> data = platform::jsonDataFrom(body);
    const std::optional<platform::Url> endpoint = platform::Url::parse(endpointText);
    if (!data || !endpoint) {
        log("❌ Error: Could not create usage tracking JSON data or URL");
        return;
    }
    platform::httpSession::start({.url = *endpoint, .body = std::move(*data), .timeoutInterval = reportTimeoutInterval},
                                 handleUsageResult);
}
