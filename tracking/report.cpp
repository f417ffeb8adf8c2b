#include "tracking/report.h"

#include <chrono>
#include <utility>

#include "platform/text.h"

namespace {

constexpr std::chrono::seconds timeoutInterval{10};

}  // namespace

std::string reportEndpoint(const std::string& url, std::string_view path) {
    return std::string(platform::trimmedOfSlashes(url)).append(path);
}

platform::HttpRequest reportRequest(platform::Url endpoint, std::string data) {
    return {.url = std::move(endpoint),
            .method = "POST",
            .headers = {{"Content-Type", "application/json"}},
            .body = std::move(data),
            .timeoutInterval = timeoutInterval};
}

const std::string* readable(const std::optional<std::string>& body) {
    return body && platform::isUtf8(*body) ? &*body : nullptr;
}
