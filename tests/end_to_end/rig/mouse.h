// The mouse of a display.
#pragma once

#include <memory>
#include <string>

namespace end_to_end {

struct Point {
    int x = 0;
    int y = 0;
};

// Clicks go to whatever is on the screen at that point, through the same path as a real mouse's, and are on their way
// when an operation returns; what the program makes of them comes later.
class Mouse {
  public:
    explicit Mouse(const std::string& display);
    ~Mouse();

    void click(Point place);

  private:
    struct Connection;
    std::unique_ptr<Connection> connection_;
};

}  // namespace end_to_end
