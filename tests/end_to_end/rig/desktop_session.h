// A desktop without a screen.
#pragma once

#include <optional>
#include <string>

#include "tests/end_to_end/rig/child_process.h"
#include "tests/end_to_end/rig/scratch_folder.h"

namespace end_to_end {

// A display of 1000 by 800 pixels without a window manager, a session bus that starts no service by itself, and the
// accessibility bus, switched on: all private, in a scratch folder, ended with the object.
//
// The accessibility library connects once in the life of a process, to what the process's own environment names. So the
// session also puts its variables there, and a process has one session at most, made before its first look at an
// accessible element and on the main thread.
class DesktopSession {
  public:
    DesktopSession();
    ~DesktopSession();
    DesktopSession(const DesktopSession&) = delete;
    DesktopSession& operator=(const DesktopSession&) = delete;

    // What went wrong at the start, with what the services printed; nothing when the session is up.
    const std::optional<std::string>& failure() const { return failure_; }

    const std::string& display() const { return display_; }

    // Takes the display away from whoever uses it. No other test of this process has one after that.
    void endDisplay() { displayServer_.end(); }

    // The variables a program of this session has: those of the session itself, a PATH, and the options for sanitizers
    // that the test has been given. No home and no language: they are the test's to choose.
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
