// The main view: its state, what it shows, and the two actions of its buttons.
#pragma once

#include <optional>
#include <string>

#include "hardware/hardware_info.h"
#include "platform/ui.h"

// A cheap handle: copies share the same six cells. Cells are written on the main thread only.
class ContentView {
  public:
    // The kind of the status banner: its symbol and colour.
    enum class StatusType { info, success, error };

    ContentView();

    // What the window shows, from the six cells alone (content_view_body.cpp).
    [[nodiscard]] platform::View body() const;

    // Detects the hardware in the background, then lists it. Returns at once. A second call starts a second detection;
    // only the disabled button prevents that.
    void detectHardware() const;

    // Sends the listed hardware to the website in the background, shows the outcome and, after a success, ends the
    // application two seconds later. Returns at once. Does nothing when no hardware is listed.
    void sendToWebsite() const;

    platform::ChangeNotifier changes;  // Notified when a cell changes.

    platform::Cell<std::string> websiteUrl;                        // The address field, as typed.
    platform::Cell<std::optional<HardwareInfo>> detectedHardware;  // Absent until the first detection has ended.
    platform::Cell<bool> isDetecting;
    platform::Cell<bool> isSending;
    platform::Cell<std::string> statusMessage;  // The banner, hidden while this is empty.
    platform::Cell<StatusType> statusType;      // Kept while the banner is hidden.

  private:
    void showStatus(StatusType type, const std::string& message) const;
    void finishSending(bool succeeded) const;
};
