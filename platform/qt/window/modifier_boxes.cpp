#include "platform/qt/window/modifier_boxes.h"

namespace platform {

namespace {

QMargins marginsOf(const Padding& padding) {
    const int length = padding.length;
    switch (padding.edges) {
        case Edges::all: return {length, length, length, length};
        case Edges::horizontal: return {length, 0, length, 0};
        case Edges::top: return {0, length, 0, 0};
        case Edges::trailing: return {0, 0, length, 0};
    }
    return {};
}

// The place of a modifier in a box; absent for one that no box shows. A modifier whose place comes before the last one
// used needs another box around the first.
std::optional<int> stageOf(const Modifier& modifier) {
    if (std::holds_alternative<Padding>(modifier) || std::holds_alternative<Stretch>(modifier)) return 0;
    if (std::holds_alternative<Frame>(modifier)) return 1;
    if (std::holds_alternative<Background>(modifier)) return 2;
    if (std::holds_alternative<CornerRadius>(modifier)) return 3;
    return std::nullopt;
}

}  // namespace

std::vector<Layer> layersOf(const std::vector<Modifier>& modifiers) {
    std::vector<Layer> layers;
    for (const Modifier& modifier : modifiers) {
        const std::optional<int> stage = stageOf(modifier);
        if (!stage) continue;
        const bool fits = !layers.empty() && (*stage == 0 ? layers.back().stage == 0 : layers.back().stage < *stage);
        if (!fits) layers.emplace_back();
        Layer& layer = layers.back();
        layer.stage = *stage;
        if (const auto* padding = std::get_if<Padding>(&modifier)) {
            layer.look.padding += marginsOf(*padding);
        } else if (const auto* stretch = std::get_if<Stretch>(&modifier)) {
            layer.alignment = layer.alignment.value_or(toolkitAlignment(stretch->alignment));
            layer.stretches = true;
        } else if (const auto* frame = std::get_if<Frame>(&modifier)) {
            layer.alignment = layer.alignment.value_or(toolkitAlignment(frame->alignment));
            layer.width = frame->width;
        } else if (const auto* background = std::get_if<Background>(&modifier)) {
            layer.look.background = *background;
        } else if (const auto* corners = std::get_if<CornerRadius>(&modifier)) {
            layer.look.cornerRadius = corners->radius;
        }
    }
    return layers;
}

Qt::Alignment toolkitAlignment(Alignment alignment) {
    return alignment == Alignment::leading ? Qt::AlignLeft : Qt::AlignHCenter;
}

}  // namespace platform
