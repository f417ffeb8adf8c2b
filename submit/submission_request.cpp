// HardwareDetector::sendToWebsite: sends the request and waits until submission_response.cpp has handled the answer.
#include <chrono>
#include <memory>
#include <optional>
#include <utility>

#include "hardware/hardware_detector.h"
#include "platform/http.h"
#include "platform/json.h"
#include "platform/log.h"
#include "submit/submission_response.h"

namespace {

constexpr std::chrono::seconds timeoutInterval{60};

// The website's own names, which are not those of the record's keyed form.
platform::JsonObject bodyOf(const HardwareInfo& hardware) {
    return {
        {"profile_name", "My PC"},
        {"os", hardware.os},
        {"processor", hardware.processor},
        {"graphics_card", hardware.graphicsCard},
        {"ram_gb", hardware.ramGB},
        {"ram_type", hardware.ramType},
        {"ram_frequency", hardware.ramFrequency},
        {"storage_gb", hardware.storageGB},
        {"storage_type", hardware.storageType},
        {"directx_version", hardware.directxVersion},
        {"gpu_memory", hardware.gpuMemory},
    };
}

// The address is taken exactly as typed: one that ends in "/" gives a doubled slash here.
std::string endpointOf(const std::string& url) { return url + "/save-detected-hardware/"; }

}  // namespace

bool HardwareDetector::sendToWebsite(const std::string& url, const HardwareInfo& hardware) {
    std::optional<platform::HttpRequest> request =
        platform::jsonRequest(endpointOf(url), bodyOf(hardware), timeoutInterval);
    if (!request) {
        platform::log("❌ Error: Could not create JSON data or URL");
        return false;
    }

    const auto submission = std::make_shared<Submission>(url);
    platform::log("📤 Sending hardware data to: ", request->url.absoluteString());
    platform::httpSession::start(std::move(*request), [submission](platform::HttpResult result) {
        handleSubmissionResult(std::move(result), *submission);
    });
    submission->completion.acquire();

    // Also after a success: an answer that was accepted with another status than 200 left its message here.
    if (submission->errorMessage) platform::log("❌ Final error: ", *submission->errorMessage);
    return submission->succeeded;
}
