#include "website_stand_in/website.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <optional>
#include <utility>

#include "platform/json.h"
#include "website_stand_in/page.h"
#include "website_stand_in/posted_object.h"

using platform::JsonObject;

namespace websiteStandIn {

namespace {

constexpr int ok = 200;
constexpr int badRequest = 400;
constexpr int notFound = 404;
constexpr int methodNotAllowed = 405;

// Always succeeds: the texts are our own or come from the JSON reader, so they are valid UTF-8.
WebAnswer jsonAnswer(int status, const JsonObject& object) {
    return {status, "application/json", platform::jsonDataFrom(object).value()};
}

WebAnswer pageAnswer(int status, std::string page) { return {status, "text/html; charset=utf-8", std::move(page)}; }

WebAnswer refusalOfMethod(const std::string& allowed) {
    WebAnswer answer = refusal(methodNotAllowed, "This address takes " + allowed + " only.");
    answer.allow = allowed;
    return answer;
}

std::string_view pathOf(std::string_view target) { return target.substr(0, target.find('?')); }

std::string_view queryOf(std::string_view target) {
    const std::size_t mark = target.find('?');
    return mark == std::string_view::npos ? std::string_view() : target.substr(mark + 1);
}

// The first parameter of that name, undecoded.
std::optional<std::string_view> parameterIn(std::string_view query, std::string_view name) {
    while (!query.empty()) {
        const std::string_view parameter = query.substr(0, query.find('&'));
        query.remove_prefix(std::min(parameter.size() + 1, query.size()));
        const std::size_t equals = parameter.find('=');
        if (equals != std::string_view::npos && parameter.substr(0, equals) == name)
            return parameter.substr(equals + 1);
    }
    return std::nullopt;
}

std::optional<std::size_t> numberFrom(std::string_view text) {
    std::size_t number = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc() || stop != end) return std::nullopt;
    return number;
}

// Parameters such as a charset may follow; media types are case-insensitive.
bool isJson(std::string_view contentType) {
    contentType = contentType.substr(0, contentType.find(';'));
    std::string type(contentType.substr(0, contentType.find_last_not_of(" \t") + 1));
    std::transform(type.begin(), type.end(), type.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return type == "application/json";
}

}  // namespace

WebAnswer refusal(int status, const std::string& sentence) {
    return jsonAnswer(status, {{"success", false}, {"error", sentence}});
}

WebAnswer Website::answerTo(const WebRequest& request) {
    const std::lock_guard lock(mutex_);
    const std::string_view path = pathOf(request.target);
    if (path == "/save-detected-hardware/") return answerToPost(request, &Website::saveDetectedHardware);
    if (path == "/api/track-install/") return answerToPost(request, &Website::trackInstall);
    if (path == "/api/track-usage/") return answerToPost(request, &Website::trackUsage);
    if (path != "/" && path != "/detected-hardware/") return refusal(notFound, "There is nothing at this address.");

    if (request.method != "GET" && request.method != "HEAD") return refusalOfMethod("GET, HEAD");
    return path == "/" ? pageAnswer(ok, startPage(records_)) : detectedHardware(request.target);
}

WebAnswer Website::answerToPost(const WebRequest& request, Action action) {
    if (request.method != "POST") return refusalOfMethod("POST");
    if (!isJson(request.contentType)) return refusal(badRequest, "The Content-Type must be application/json.");
    std::optional<JsonObject> object = platform::jsonObjectFrom(request.body);
    if (!object) return refusal(badRequest, "The body must be a JSON object.");
    PostedObject posted(std::move(*object));
    return (this->*action)(posted);
}

WebAnswer Website::saveDetectedHardware(PostedObject& posted) {
    Machine machine{
        .profileName = posted.text("profile_name"),
        .os = posted.text("os"),
        .processor = posted.text("processor"),
        .graphicsCard = posted.text("graphics_card"),
        .ramGb = posted.integer("ram_gb"),
        .ramType = posted.text("ram_type"),
        .ramFrequency = posted.integer("ram_frequency"),
        .storageGb = posted.integer("storage_gb"),
        .storageType = posted.text("storage_type"),
        .directxVersion = posted.text("directx_version"),
        .gpuMemory = posted.integer("gpu_memory"),
    };
    if (const auto complaint = posted.complaint()) return refusal(badRequest, *complaint);

    records_.machines.push_back(std::move(machine));
    const auto hardwareId = static_cast<std::int64_t>(records_.machines.size());
    return jsonAnswer(ok, {{"success", true}, {"hardware_id", hardwareId}, {"redirect_url", "/detected-hardware/"}});
}

WebAnswer Website::trackInstall(PostedObject& posted) {
    const std::string platformName = posted.text("platform");
    const std::string deviceId = posted.text("device_id");
    if (const auto complaint = posted.complaint()) return refusal(badRequest, *complaint);
    if (platformName != "mac") return refusal(badRequest, R"(The member "platform" must be "mac".)");

    const bool created = records_.installs.insert(deviceId).second;
    return jsonAnswer(ok, {{"created", created}});
}

WebAnswer Website::trackUsage(PostedObject& posted) {
    const std::string deviceId = posted.text("device_id");
    const std::string date = posted.text("date");
    if (const auto complaint = posted.complaint()) return refusal(badRequest, *complaint);

    records_.daysOfUse[deviceId].push_back(date);
    return jsonAnswer(ok, {{"success", true}});
}

WebAnswer Website::detectedHardware(std::string_view target) const {
    const auto parameter = parameterIn(queryOf(target), "hardware_id");
    const auto id = parameter ? numberFrom(*parameter) : std::nullopt;
    if (!id || *id < 1 || *id > records_.machines.size()) return pageAnswer(notFound, unknownMachinePage());
    return pageAnswer(ok, machinePage(records_.machines[*id - 1]));
}

}  // namespace websiteStandIn
