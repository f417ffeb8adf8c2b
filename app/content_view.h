// The main view: its state, what it shows, and the two actions of its buttons.
#pragma once

#include <optional>
#include <string>

#include "hardware/hardware_info.h"
#include "platform/ui.h"

// A cheap handle: copies share the same six cells, so whatever a copy writes, the window shows. Cells are written on
// the main thread only.
class ContentView {
  public:
    // The kind of the status banner: its symbol and colour.
    enum class StatusType { info, success, error };

    ContentView();

    // What the window shows, from the six cells alone (content_view_body.cpp).
    [[nodiscard]] platform::View body() const;

    // Finds out the hardware in the background, then lists it. Returns at once. Nothing keeps a second call from
    // starting a second detection; the disabled button does.
    void detectHardware() const;

    // Sends the hardware listed to the website in the background, then says how it went and, after a success, ends the
    // application two seconds later. Returns at once, and does nothing when no hardware is listed.
    void sendToWebsite() const;

    platform::ChangeNotifier changes;  // Tells whoever shows the view that one of the cells has changed.

    platform::Cell<std::string> websiteUrl;                        // The address field, as typed.
    platform::Cell<std::optional<HardwareInfo>> detectedHardware;  // Absent until the first detection is over.
    platform::Cell<bool> isDetecting;
    platform::Cell<bool> isSending;
    platform::Cell<std::string> statusMessage;  // The banner, hidden while this is empty.
    platform::Cell<StatusType> statusType;      // Kept while the banner is hidden.

  private:
    void showStatus(StatusType type, const std::string& message) const;
    void finishSending(bool succeeded) const;
};
