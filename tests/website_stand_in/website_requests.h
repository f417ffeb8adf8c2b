// Requests to the stand-in website, and what its answers say.
#pragma once

#include <optional>
#include <stdexcept>
#include <string>
#include <variant>

#include "platform/json.h"
#include "website_stand_in/website.h"

namespace websiteStandInTest {

inline constexpr const char* machineJson =
    R"({"profile_name":"My PC","os":"macOS","processor":"Apple M2 Pro","graphics_card":"Apple M2 Pro GPU","ram_gb":16,)"
    R"("ram_type":"LPDDR5","ram_frequency":6400,"storage_gb":494,"storage_type":"SSD","directx_version":"Metal 3",)"
    R"("gpu_memory":12})";

inline websiteStandIn::WebAnswer post(websiteStandIn::Website& website, const std::string& target,
                                      const std::string& body) {
    return website.answerTo({"POST", target, "application/json", body});
}

inline websiteStandIn::WebAnswer get(websiteStandIn::Website& website, const std::string& target) {
    return website.answerTo({"GET", target, "", ""});
}

inline websiteStandIn::WebAnswer saveMachine(websiteStandIn::Website& website, const std::string& body) {
    return post(website, "/save-detected-hardware/", body);
}

inline std::string replaced(std::string text, const std::string& part, const std::string& replacement) {
    const std::size_t position = text.find(part);
    if (position == std::string::npos) throw std::invalid_argument(part);
    return text.replace(position, part.size(), replacement);
}

inline std::string machineWith(const std::string& part, const std::string& replacement) {
    return replaced(machineJson, part, replacement);
}

// The sentence of a refusal, or a word on what kept the answer from being one.
inline std::string sentenceOf(const websiteStandIn::WebAnswer& answer) {
    const std::optional<platform::JsonObject> object = platform::jsonObjectFrom(answer.body);
    if (!object) return "no JSON object";
    const platform::JsonValue* success = object->find("success");
    if (success == nullptr || !std::holds_alternative<bool>(success->content())) return "no success";
    if (success->asBool() != false) return "no refusal";
    const platform::JsonValue* error = object->find("error");
    return error != nullptr && error->asString() != nullptr ? *error->asString() : "no sentence";
}

inline bool contains(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

}  // namespace websiteStandInTest
