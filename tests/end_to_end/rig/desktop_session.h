// A virtual desktop session.
#pragma once

#include <optional>
#include <string>

#include "tests/end_to_end/rig/child_process.h"
#include "tests/end_to_end/rig/scratch_folder.h"

namespace end_to_end {

// A display of 1000 by 800 pixels without a window manager, a session bus that activates no services, and the
// accessibility bus, enabled. All are private and end with the object.
//
// The accessibility library connects once per process, to the bus that the process's environment names. So the session
// sets its variables in this process too. Make one session at most, on the main thread, before the first use of an
// accessible element.
class DesktopSession {
  public:
    DesktopSession();
    ~DesktopSession();
    DesktopSession(const DesktopSession&) = delete;
    DesktopSession& operator=(const DesktopSession&) = delete;

    // Why the session did not start, with the services' output; nothing if it runs.
    const std::optional<std::string>& failure() const { return failure_; }

    const std::string& display() const { return display_; }

    // Ends the display server. Later tests of this process have no display.
    void endDisplay() { displayServer_.end(); }

    // The variables for a program in this session: the session's own, a PATH, and this process's sanitizer options. The
    // test adds a home and a locale.
    Environment environment() const;

  private:
    std::optional<std::string> startAll();
    std::optional<std::string> startDisplay();
    std::optional<std::string> startSessionBus();
    std::optional<std::string> startAccessibilityBus();
    Launch service(std::string path, std::vector<std::string> arguments) const;
    std::string printedByServices() const;

    ScratchFolder folder_;
    std::string display_;
    std::string busAddress_;
    Descriptor serviceLog_;
    ChildProcess displayServer_;
    ChildProcess sessionBus_;
    ChildProcess accessibilityBus_;
    std::optional<std::string> failure_;
};

}  // namespace end_to_end
