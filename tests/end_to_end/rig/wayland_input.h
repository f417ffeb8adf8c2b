// The pointer and the keyboard of a Wayland desktop.
#pragma once

#include <memory>
#include <string>

namespace end_to_end {

// Both are there from the construction to the end of its life. What they do takes the same path as a real device's, and
// has reached the compositor when an operation returns; what a program makes of it comes later.
class WaylandInput {
  public:
    // On the display of that name, whose screen has that many points.
    WaylandInput(const std::string& display, int width, int height);
    ~WaylandInput();
    WaylandInput(const WaylandInput&) = delete;
    WaylandInput& operator=(const WaylandInput&) = delete;

    // False when the display can't be reached or takes no input from programs.
    bool works() const;

    void moveTo(int x, int y);  // in points from the screen's top left
    void holdButton();          // the left one
    void releaseButton();
    void click(int x, int y);

    // A key of the US keyboard by its number in <linux/input-event-codes.h>, such as KEY_Q.
    void press(unsigned key);
    void pressWithControl(unsigned key);

  private:
    struct Devices;
    std::unique_ptr<Devices> devices_;
    int width_;
    int height_;
};

}  // namespace end_to_end
