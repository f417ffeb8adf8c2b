// A Wayland desktop without a screen.
#pragma once

#include <sys/types.h>

#include <optional>
#include <string>

#include "tests/end_to_end/rig/child_process.h"
#include "tests/end_to_end/rig/fifo.h"
#include "tests/end_to_end/rig/scratch_folder.h"

namespace end_to_end {

// The compositor sway with one screen of 1600 by 1200 pixels, ended with the object. It puts title bars on windows that
// don't refuse them, and lets windows of fixed size float. Lengths and places are in points.
class WaylandDesktop {
  public:
    // Why this machine has none, for GTEST_SKIP(): a package or a permission is missing. Nothing when it has.
    static std::optional<std::string> whyNone();

    explicit WaylandDesktop(double scale = 1);
    ~WaylandDesktop() { end(); }

    // What went wrong at the start; nothing when it is up.
    const std::optional<std::string>& failure() const { return failure_; }

    const std::string& display() const { return display_; }
    int width() const { return width_; }
    int height() const { return height_; }

    // What a program of a session has here instead of an X display.
    Environment environmentFrom(Environment session) const;

    struct Window {
        int x = 0;
        int y = 0;
        int width = 0;   // title bar and borders included
        int height = 0;  // title bar and borders included
        bool hasTitleBar = false;
        std::string applicationId;
    };

    // A program's window once it is shown, first frame and all.
    std::optional<Window> windowOf(pid_t program) const;

    bool saveScreenshot(const std::string& file) const;

    // Takes the display away from whoever uses it.
    void end() { compositor_.end(); }

  private:
    std::optional<std::string> start(double scale);

    ScratchFolder folder_;
    Fifo ready_;
    ChildProcess compositor_;
    std::string display_;
    int width_ = 0;
    int height_ = 0;
    std::optional<std::string> failure_;
};

}  // namespace end_to_end
