#include "tracking/report.h"

#include "platform/text.h"

std::string reportEndpoint(const std::string& url, std::string_view path) {
    return std::string(platform::trimmedOfSlashes(url)).append(path);
}

const std::string* readableBody(const platform::HttpAnswer& answer) {
    return platform::isUtf8(answer.body) ? &answer.body : nullptr;
}
