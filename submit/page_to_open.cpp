#include "submit/page_to_open.h"

#include "platform/text.h"

using platform::Url;

namespace {

bool contains(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

// A number counts before a text, and a text of digits stays a text.
std::optional<HardwareId> hardwareIdIn(const platform::JsonObject& answer) {
    const platform::JsonValue* member = answer.find("hardware_id");
    if (member == nullptr) return std::nullopt;
    if (const auto integer = member->asInteger()) return *integer;
    if (const std::string* text = member->asString()) return *text;
    return std::nullopt;
}

std::optional<std::string> redirectIn(const platform::JsonObject& answer) {
    const platform::JsonValue* member = answer.find("redirect_url");
    const std::string* redirect = member != nullptr ? member->asString() : nullptr;
    if (redirect == nullptr || redirect->empty()) return std::nullopt;
    return *redirect;
}

// Case counts: an address that begins with "HTTPS://" is taken for a path.
bool isAbsolute(const std::string& redirect) {
    return redirect.starts_with("http://") || redirect.starts_with("https://");
}

std::string withHardwareId(const std::string& address, const HardwareId& hardwareId) {
    return address + (contains(address, "?") ? "&" : "?") + "hardware_id=" + textOf(hardwareId);
}

// Any mention of "hardware_id" in the redirect, in whatever word, means that the website has put the id in by itself.
std::string relativePage(const std::string& redirect, const std::optional<HardwareId>& hardwareId,
                         const std::string& baseUrl) {
    std::string path = redirect.starts_with('/') ? redirect : "/" + redirect;
    if (hardwareId && !contains(path, "hardware_id")) path = withHardwareId(path, *hardwareId);
    return std::string(platform::trimmedOfSlashes(baseUrl)) + path;
}

}  // namespace

std::string textOf(const HardwareId& hardwareId) {
    if (const auto* integer = std::get_if<std::int64_t>(&hardwareId)) return std::to_string(*integer);
    return std::get<std::string>(hardwareId);
}

PageToOpen pageToOpen(const platform::JsonObject& answer, const std::string& baseUrl) {
    PageToOpen choice;
    choice.hardwareId = hardwareIdIn(answer);

    if (const std::optional<std::string> redirect = redirectIn(answer)) {
        choice.page =
            Url::parse(isAbsolute(*redirect) ? *redirect : relativePage(*redirect, choice.hardwareId, baseUrl));
        if (!choice.page) choice.unusableRedirect = redirect;
    } else if (choice.hardwareId) {
        choice.page = Url::parse(withHardwareId(baseUrl, *choice.hardwareId));
    }

    if (!choice.page) choice.page = Url::parse(baseUrl);
    return choice;
}
