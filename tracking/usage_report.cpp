#include <optional>
#include <utility>

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
constexpr int ok = 200;

void handleUsageAnswer(const std::optional<std::string>& body, const std::optional<platform::HttpResponse>& response,
                       const std::optional<platform::HttpError>& error) {
    if (error) {
        log("❌ Usage tracking error: ", error->localizedDescription);
        return;
    }
    if (!response) return;

    const std::string* text = readable(body);
    if (response->statusCode != ok) {
        log("⚠️ Usage tracking returned status: ", std::to_string(response->statusCode));
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
    platform::httpSession::start(reportRequest(*endpoint, std::move(*data)), handleUsageAnswer);
}
