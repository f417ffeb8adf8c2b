#include "app/content_view.h"

#include <chrono>
#include <utility>

#include "app/website_base_url.h"
#include "hardware/hardware_detector.h"
#include "platform/application.h"
#include "platform/dispatch.h"
#include "platform/log.h"

using namespace platform;

namespace {

// Time to read the banner and to see the browser come up.
constexpr std::chrono::milliseconds quitDelay{2000};

}  // namespace

ContentView::ContentView()
    : websiteUrl(changes, std::string(websiteBaseUrl())),
      detectedHardware(changes, std::nullopt),
      isDetecting(changes, false),
      isSending(changes, false),
      statusMessage(changes, ""),
      statusType(changes, StatusType::info) {}

void ContentView::showStatus(StatusType type, const std::string& message) const {
    statusMessage.set(message);
    statusType.set(type);
}

void ContentView::detectHardware() const {
    isDetecting.set(true);
    statusMessage.set("");
    userInitiatedQueue::async([view = *this] {
        const HardwareInfo hardware = HardwareDetector::detect();
        mainQueue::async([view, hardware] {
            view.detectedHardware.set(hardware);
            view.isDetecting.set(false);
            view.showStatus(StatusType::success, "Hardware detected successfully!");
        });
    });
}

void ContentView::sendToWebsite() const {
    const std::optional<HardwareInfo> hardware = detectedHardware.get();
    if (!hardware) return;
    isSending.set(true);
    showStatus(StatusType::info, "Sending hardware data...");
    userInitiatedQueue::async([view = *this, record = *hardware] {
        // The address is read now, not at the press, so that what was typed in between counts.
        const bool succeeded = HardwareDetector::sendToWebsite(view.websiteUrl.get(), record);
        mainQueue::async([view, succeeded] { view.finishSending(succeeded); });
    });
}

void ContentView::finishSending(bool succeeded) const {
    isSending.set(false);
    if (succeeded) {
        showStatus(StatusType::success, "Hardware data sent successfully! Opening website...");
        // Another press of the button in the meantime does not cancel this.
        mainQueue::asyncAfter(quitDelay, [] { application::terminate(); });
    } else {
        showStatus(StatusType::error, "Error: Failed to send hardware data. Check the console for details.");
        log("❌ Failed to send hardware data. Check the console output above for details.");
    }
}
