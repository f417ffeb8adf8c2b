// The window's states, each brought about as a person would.
#pragma once

#include <string>
#include <vector>

#include "tests/window/shown_window.h"

namespace window_test {

class ScenicWindow : public ShownWindow {
  public:
    [[nodiscard]] static const std::vector<std::string>& scenes();

  protected:
    void bringAbout(const std::string& scene);
};

}  // namespace window_test
