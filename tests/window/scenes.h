// The window's states, each reached by a person's actions.
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
