// Moves and clicks the pointer of a Wayland desktop.
#pragma once

#include <memory>
#include <string>

namespace end_to_end {

// A virtual device, like a real one to programs. When a call returns, the compositor has its events; the program
// handles them later.
class WaylandPointer {
  public:
    // `width` and `height` are the screen's size in points.
    WaylandPointer(const std::string& display, int width, int height);
    ~WaylandPointer();
    WaylandPointer(const WaylandPointer&) = delete;
    WaylandPointer& operator=(const WaylandPointer&) = delete;

    // False if the display can't be reached or accepts no virtual pointer.
    bool works() const;

    void moveTo(int x, int y);  // in points from the screen's top left
    void holdButton();          // the left button
    void releaseButton();
    void click(int x, int y);

  private:
    struct Connection;
    std::unique_ptr<Connection> connection_;
    int width_;
    int height_;
};

}  // namespace end_to_end
