// A virtual Wayland desktop.
#pragma once

#include <sys/types.h>

#include <optional>
#include <string>

#include "tests/end_to_end/rig/child_process.h"
#include "tests/end_to_end/rig/fifo.h"
#include "tests/support/files.h"

namespace end_to_end {

// The compositor sway with one screen of 1600 by 1200 pixels; it ends with the object. It adds a title bar to a window
// unless the window refuses one, and lets windows of fixed size float. Sizes and positions are in points.
class WaylandDesktop {
  public:
    // Which package or permission is missing, for GTEST_SKIP(); nothing if the desktop can run.
    static std::optional<std::string> whyUnavailable();

    explicit WaylandDesktop(double scale = 1);  // Throws with sway's output if it does not start.
    ~WaylandDesktop() { end(); }

    const std::string& display() const { return display_; }
    int width() const { return width_; }
    int height() const { return height_; }

    // The session's environment with this display in place of the X display.
    Environment environmentFrom(Environment session) const;

    struct Window {
        int x = 0;
        int y = 0;
        int width = 0;   // with title bar and borders
        int height = 0;  // with title bar and borders
        bool hasTitleBar = false;
        std::string applicationId;
    };

    // The program's window, once its first frame is shown.
    std::optional<Window> windowOf(pid_t program) const;

    bool saveScreenshot(const std::string& file) const;

    // Ends the compositor, and with it the display.
    void end() { compositor_.end(); }

  private:
    void start(double scale);

    testSupport::TemporaryFolder folder_;
    Fifo ready_;
    ChildProcess compositor_;
    std::string display_;
    int width_ = 0;
    int height_ = 0;
};

}  // namespace end_to_end
