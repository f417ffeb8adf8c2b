#include "submit/page_to_open.h"

#include <cstdint>
#include <utility>

#include "platform/text.h"

using platform::Url;

namespace {

bool contains(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

// A number as decimal text, or a text unchanged.
std::optional<std::string> hardwareIdIn(platform::JsonObject& answer) {
    const std::optional<std::int64_t> number = answer.integer("hardware_id");
    return number ? std::to_string(*number) : answer.takeString("hardware_id");
}

// Case counts: "HTTPS://" begins a path.
bool isAbsolute(const std::string& redirect) {
    return redirect.starts_with("http://") || redirect.starts_with("https://");
}

// The separator is "&" if `part` contains "?".
void addHardwareId(std::string& address, const std::string& part, const std::string& hardwareId) {
    address += contains(part, "?") ? "&hardware_id=" : "?hardware_id=";
    address += hardwareId;
}

// If the redirect contains "hardware_id" anywhere, no id is added.
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
