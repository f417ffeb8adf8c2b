// A virtual desktop session.
#pragma once

#include <string>

#include "tests/end_to_end/rig/child_process.h"
#include "tests/support/files.h"

namespace end_to_end {

// A display of 1000 by 800 pixels without a window manager, a session bus that activates no services, and the
// accessibility bus, enabled. All are private and end with the object.
//
// The accessibility library connects once per process, to the bus that the process's environment names. So the session
// sets its variables in this process too. Make one session at most, on the main thread, before the first use of an
// accessible element.
class DesktopSession {
  public:
    DesktopSession();  // Throws with the services' output if one does not start.
    ~DesktopSession();
    DesktopSession(const DesktopSession&) = delete;
    DesktopSession& operator=(const DesktopSession&) = delete;

    const std::string& display() const { return display_; }

    // Ends the display server. Later tests of this process have no display.
    void endDisplay() { displayServer_.end(); }

    // The variables for a program in this session: the session's own, a PATH, a locale, and this process's sanitizer
    // options. The test adds a home.
    Environment environment() const;

  private:
    void startDisplay();
    void startSessionBus();
    void startAccessibilityBus();
    Launch service(std::string path, std::vector<std::string> arguments) const;

    testSupport::TemporaryFolder folder_;
    std::string display_;
    std::string busAddress_;
    Descriptor serviceLog_;
    ChildProcess displayServer_;
    ChildProcess sessionBus_;
    ChildProcess accessibilityBus_;
};

}  // namespace end_to_end
