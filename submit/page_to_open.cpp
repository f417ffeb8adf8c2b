#include "submit/page_to_open.h"

#include <cstdint>
#include <utility>

#include "platform/text.h"

using platform::Url;

namespace {

bool contains(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

// A number counts before a text, and a text of digits stays a text.
std::optional<std::string> hardwareIdIn(platform::JsonObject& answer) {
    const platform::JsonValue* member = answer.find("hardware_id");
    const std::optional<std::int64_t> number = member != nullptr ? member->asInteger() : std::nullopt;
    return number ? std::to_string(*number) : answer.takeString("hardware_id");
}

// Case counts: an address that begins with "HTTPS://" is taken for a path.
bool isAbsolute(const std::string& redirect) {
    return redirect.starts_with("http://") || redirect.starts_with("https://");
}

// `part` is the one whose query the id joins.
void addHardwareId(std::string& address, const std::string& part, const std::string& hardwareId) {
    address += contains(part, "?") ? "&hardware_id=" : "?hardware_id=";
    address += hardwareId;
}

// Any mention of "hardware_id" in the redirect, in whatever word, means that the website has put the id in by itself.
std::string relativePage(const std::string& redirect, const std::optional<std::string>& hardwareId,
                         const std::string& baseUrl) {
    std::string page(platform::trimmedOfSlashes(baseUrl));
    if (!redirect.starts_with('/')) page += '/';
    page += redirect;
    if (hardwareId && !contains(redirect, "hardware_id")) addHardwareId(page, redirect, *hardwareId);
    return page;
}

}  // namespace

PageToOpen pageToOpen(platform::JsonObject answer, const std::string& baseUrl) {
    PageToOpen choice;
    choice.hardwareId = hardwareIdIn(answer);

    std::optional<std::string> redirect = answer.takeString("redirect_url");
    if (redirect && !redirect->empty()) {
        choice.page =
            Url::parse(isAbsolute(*redirect) ? *redirect : relativePage(*redirect, choice.hardwareId, baseUrl));
        if (!choice.page) choice.unusableRedirect = std::move(redirect);
    } else if (choice.hardwareId) {
        std::string page = baseUrl;
        addHardwareId(page, baseUrl, *choice.hardwareId);
        choice.page = Url::parse(std::move(page));
    }

    if (!choice.page) choice.page = Url::parse(baseUrl);
    return choice;
}
