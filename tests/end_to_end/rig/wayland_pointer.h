// The pointer of a Wayland desktop.
#pragma once

#include <memory>
#include <string>

namespace end_to_end {

// It is there from the construction to the end of its life. What it does takes the same path as a real device's, and
// has reached the compositor when an operation returns; what a program makes of it comes later.
class WaylandPointer {
  public:
    // On the display of that name, whose screen has that many points.
    WaylandPointer(const std::string& display, int width, int height);
    ~WaylandPointer();
    WaylandPointer(const WaylandPointer&) = delete;
    WaylandPointer& operator=(const WaylandPointer&) = delete;

    // False when the display can't be reached or takes no input from programs.
    bool works() const;

    void moveTo(int x, int y);  // in points from the screen's top left
    void holdButton();          // the left one
    void releaseButton();
    void click(int x, int y);

  private:
    struct Connection;
    std::unique_ptr<Connection> connection_;
    int width_;
    int height_;
};

}  // namespace end_to_end
