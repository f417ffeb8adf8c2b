// One row of the list of detected hardware.
#pragma once

#include <string>

#include "platform/ui.h"

struct HardwareRow {
    std::string label;  // Without the colon, which the row adds.
    std::string value;

    [[nodiscard]] platform::View body() const;
};
