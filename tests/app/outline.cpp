#include "tests/app/outline.h"

using namespace platform;

namespace {

std::string nameOf(Color color) {
    constexpr const char* names[] = {"primary", "secondary", "blue", "green", "red", "gray", "white"};
    return names[static_cast<int>(color)];
}

std::string nameOf(Alignment alignment) { return alignment == Alignment::leading ? "leading" : "center"; }

std::string nameOf(Edges edges) {
    constexpr const char* names[] = {"all", "horizontal", "top", "trailing"};
    return names[static_cast<int>(edges)];
}

struct ElementText {
    std::string operator()(const Nothing&) const { return "nothing"; }
    std::string operator()(const Spacer&) const { return "spacer"; }
    std::string operator()(const Text& text) const {
        constexpr const char* styles[] = {"body", "subheadline", "headline", "title2"};
        constexpr const char* weights[] = {"regular", "semibold", "bold"};
        std::string line = "text \"" + text.text + "\" " + styles[static_cast<int>(text.style)];
        if (text.weight) line += std::string(" ") + weights[static_cast<int>(*text.weight)];
        if (text.color) line += " " + nameOf(*text.color);
        return line;
    }
    std::string operator()(const TextField& field) const {
        return "field \"" + field.text + "\" (" + field.placeholder + ") named " + field.accessibleName;
    }
    std::string operator()(const ProgressIndicator& indicator) const {
        return "spinner " + std::to_string(indicator.scale).substr(0, 3);
    }
    std::string operator()(const Symbol& symbol) const {
        constexpr const char* names[] = {"checkmark.circle.fill", "xmark.circle.fill", "info.circle.fill"};
        return std::string("symbol ") + names[static_cast<int>(symbol.name)] + " " + nameOf(symbol.tint);
    }
    std::string operator()(const Stack& stack) const {
        return (stack.axis == Axis::vertical ? "vstack " : "hstack ") + nameOf(stack.alignment) + " " +
               std::to_string(stack.spacing);
    }
    std::string operator()(const Button&) const { return "button"; }
    std::string operator()(const ScrollArea& area) const { return "scroll max " + std::to_string(area.maximumHeight); }
};

struct ModifierText {
    std::string operator()(const Padding& padding) const {
        return "padding " + nameOf(padding.edges) + " " + std::to_string(padding.length);
    }
    std::string operator()(const Stretch& stretch) const { return "stretch " + nameOf(stretch.alignment); }
    std::string operator()(const Frame& frame) const {
        return "width " + std::to_string(frame.width) + " " + nameOf(frame.alignment);
    }
    std::string operator()(const Background& background) const {
        return "background " + nameOf(background.color) + " " + std::to_string(background.opacity).substr(0, 3) +
               " corners " + std::to_string(background.cornerRadius);
    }
    std::string operator()(const Foreground& foreground) const { return "foreground " + nameOf(foreground.color); }
    std::string operator()(const Disabled& disabled) const { return disabled.disabled ? "disabled" : "enabled"; }
    std::string operator()(const Spoken& spoken) const { return spoken.announced ? "announced" : "spoken as one"; }
    std::string operator()(const OnAppear&) const { return "on appear"; }
};

const std::vector<View>& childrenOf(const View& view) {
    static const std::vector<View> none;
    if (const auto* stack = std::get_if<Stack>(&view.element())) return stack->children;
    if (const auto* button = std::get_if<Button>(&view.element())) return button->label;
    if (const auto* area = std::get_if<ScrollArea>(&view.element())) return area->content;
    return none;
}

}  // namespace

std::string outlineOf(const View& view, int depth) {
    std::string outline =
        std::string(static_cast<std::size_t>(depth) * 2, ' ') + std::visit(ElementText{}, view.element());
    for (const Modifier& modifier : view.modifiers()) outline += " | " + std::visit(ModifierText{}, modifier);
    outline += "\n";
    for (const View& child : childrenOf(view)) outline += outlineOf(child, depth + 1);
    return outline;
}

const TextField* fieldIn(const View& view) {
    if (const auto* field = std::get_if<TextField>(&view.element())) return field;
    for (const View& child : childrenOf(view)) {
        if (const TextField* found = fieldIn(child)) return found;
    }
    return nullptr;
}
