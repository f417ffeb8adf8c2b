// The modifiers of a view as boxes around its element.
#pragma once

#include <optional>
#include <vector>

#include "platform/qt/window/widgets/box.h"
#include "platform/ui.h"

namespace platform {

// What one box shows, from the inside out: padding and stretch, width, background, rounded corners.
struct Layer {
    BoxLook look;
    std::optional<Qt::Alignment> alignment;  // Of content that does not fill the box.
    bool stretches = false;
    std::optional<int> width;
    int stage = 0;
};

// The boxes from the inside out.
[[nodiscard]] std::vector<Layer> layersOf(const std::vector<Modifier>& modifiers);

[[nodiscard]] Qt::Alignment toolkitAlignment(Alignment alignment);

}  // namespace platform
