#include "platform/qt/window/view_renderer.h"

#include <algorithm>
#include <optional>

#include "platform/qt/window/widgets/action_button.h"
#include "platform/qt/window/widgets/address_field.h"
#include "platform/qt/window/widgets/flexible_scroll_area.h"
#include "platform/qt/window/widgets/spinner.h"
#include "platform/qt/window/widgets/spoken_group.h"
#include "platform/qt/window/widgets/symbol_icon.h"
#include "platform/qt/window/widgets/text_label.h"

namespace platform {

namespace {

template <typename Kind>
const Kind* modifierOf(const View& view) {
    const Kind* found = nullptr;
    for (const Modifier& modifier : view.modifiers()) {
        if (const auto* match = std::get_if<Kind>(&modifier)) found = match;
    }
    return found;
}

// Whether a view takes all the width that it is offered.
bool fillsWidth(const View& view) {
    std::optional<bool> asModified;  // By the last modifier that sets a width.
    for (const Modifier& modifier : view.modifiers()) {
        if (std::holds_alternative<Frame>(modifier)) asModified = false;
        if (std::holds_alternative<Stretch>(modifier)) asModified = true;
    }
    if (asModified) return *asModified;
    const View::Element& element = view.element();
    if (const auto* stack = std::get_if<Stack>(&element)) {
        return std::any_of(stack->children.begin(), stack->children.end(), [stack](const View& child) {
            const bool isHorizontalSpacer =
                stack->axis == Axis::horizontal && std::holds_alternative<Spacer>(child.element());
            return isHorizontalSpacer || fillsWidth(child);
        });
    }
    if (const auto* button = std::get_if<Button>(&element)) return fillsWidth(button->label.front());
    return std::holds_alternative<TextField>(element) || std::holds_alternative<ScrollArea>(element);
}

// All text in a view, for screen readers.
QString wordsOf(const View& view) {
    if (const auto* text = std::get_if<Text>(&view.element())) return QString::fromStdString(text->text);
    QStringList words;
    if (const auto* stack = std::get_if<Stack>(&view.element())) {
        for (const View& child : stack->children) words << wordsOf(child);
    }
    words.removeAll(QString());
    return words.join(QLatin1Char(' '));
}

// Whether a view has a progress indicator.
bool isBusy(const View& view) {
    if (const auto* stack = std::get_if<Stack>(&view.element())) {
        return std::any_of(stack->children.begin(), stack->children.end(), isBusy);
    }
    return std::holds_alternative<ProgressIndicator>(view.element());
}

Color foregroundIn(const View& view, Color surrounding) {
    const auto* foreground = modifierOf<Foreground>(view);
    return foreground != nullptr ? foreground->color : surrounding;
}

// What needs new widgets when it changes, as numbers: the kinds of element and modifiers, and how they place their
// content.
std::vector<int> shapeOf(const View& view) {
    std::vector<int> shape{static_cast<int>(view.element().index()), static_cast<int>(fillsWidth(view))};
    const auto add = [&shape](std::vector<int> numbers) { shape.insert(shape.end(), numbers.begin(), numbers.end()); };
    if (const auto* stack = std::get_if<Stack>(&view.element())) {
        add({static_cast<int>(stack->axis), static_cast<int>(stack->alignment), stack->spacing,
             static_cast<int>(stack->children.size())});
    } else if (const auto* button = std::get_if<Button>(&view.element())) {
        add(shapeOf(button->label.front()));
    } else if (const auto* area = std::get_if<ScrollArea>(&view.element())) {
        add(shapeOf(area->content.front()));
    }
    for (const Modifier& modifier : view.modifiers()) {
        add({static_cast<int>(modifier.index())});
        if (const auto* stretch = std::get_if<Stretch>(&modifier)) add({static_cast<int>(stretch->alignment)});
        if (const auto* frame = std::get_if<Frame>(&modifier)) add({frame->width, static_cast<int>(frame->alignment)});
    }
    return shape;
}

// For widgets of accessible_elements.cpp. Newer versions of the toolkit make the element when the widget gets its
// parent; inside the constructor the widget would still be a plain QWidget.
template <typename Widget>
Widget* placed(Widget* made, QWidget* parent) {
    made->setParent(parent);
    return made;
}

}  // namespace

RenderedView::RenderedView(const View& view, QWidget* parent, Color surrounding) : shape_(shapeOf(view)) {
    make(view, parent, foregroundIn(view, surrounding));
    update(view, surrounding);
}

bool RenderedView::fits(const View& view) const { return shapeOf(view) == shape_; }

void RenderedView::make(const View& view, QWidget* parent, Color foreground) {
    const View::Element& element = view.element();
    isEmptySlot_ = std::holds_alternative<Nothing>(element);
    if (std::holds_alternative<Text>(element)) {
        own_ = new TextLabel(parent);
    } else if (std::holds_alternative<TextField>(element)) {
        own_ = new AddressField(parent);
    } else if (std::holds_alternative<ProgressIndicator>(element)) {
        own_ = new Spinner(parent);
    } else if (std::holds_alternative<Symbol>(element)) {
        own_ = new SymbolIcon(parent);
    } else if (const auto* stack = std::get_if<Stack>(&element)) {
        const auto* spoken = modifierOf<Spoken>(view);
        own_ = spoken != nullptr ? placed(new SpokenGroup(spoken->announced), parent) : new QWidget(parent);
        const bool isVertical = stack->axis == Axis::vertical;
        auto* layout = new QBoxLayout(isVertical ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight, own_);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->setSpacing(stack->spacing);
        // Empty slots, which the first update fills.
        children_.assign(stack->children.size(), RenderedView(View(Nothing{}), own_, foreground));
    } else if (const auto* button = std::get_if<Button>(&element)) {
        auto* made = placed(new ActionButton, parent);
        own_ = made;
        children_.emplace_back(button->label.front(), made, foreground);
        made->setLabel(children_.front().widget());
    } else if (const auto* area = std::get_if<ScrollArea>(&element)) {
        auto* made = placed(new FlexibleScrollArea, parent);
        own_ = made;
        children_.emplace_back(area->content.front(), made->viewport(), foreground);
        made->setWidget(children_.front().widget());
        made->widget()->setAutoFillBackground(false);
    }
    if (own_ == nullptr) return;

    const bool fills = fillsWidth(View(element));
    for (const Modifier& modifier : view.modifiers()) {
        if (!Box::shows(modifier)) continue;
        boxes_.push_back(new Box(widget(), fills, modifier, parent));
    }
}

void RenderedView::insertInto(QBoxLayout& layout, int index, const View& view, const Stack& stack) const {
    if (std::holds_alternative<Spacer>(view.element())) {
        layout.insertStretch(index, 1);
    } else if (widget() != nullptr) {
        const bool fills = fillsWidth(view);
        if (stack.axis == Axis::horizontal) {
            layout.insertWidget(index, widget(), fills ? 1 : 0, Qt::AlignVCenter);
        } else {
            layout.insertWidget(index, widget(), 0, fills ? Qt::Alignment() : toolkitAlignment(stack.alignment));
        }
        if (widget()->parentWidget()->isVisible()) widget()->show();
    }
}

void RenderedView::updateStack(const Stack& stack, Color foreground) {
    auto& layout = static_cast<QBoxLayout&>(*own_->layout());
    int index = 0;  // Of the layout's items: empty slots have none.
    for (std::size_t slot = 0; slot < stack.children.size(); ++slot) {
        RenderedView& rendered = children_[slot];
        const View& child = stack.children[slot];
        if (rendered.fits(child)) {
            rendered.update(child, foreground);
        } else {
            if (!rendered.isEmptySlot_) delete layout.takeAt(index);
            rendered.remove();
            rendered = RenderedView(child, own_, foreground);
            rendered.insertInto(layout, index, child, stack);
        }
        if (!std::holds_alternative<Nothing>(child.element())) ++index;
    }
}

void RenderedView::update(const View& view, Color surrounding) {
    const Color foreground = foregroundIn(view, surrounding);
    const View::Element& element = view.element();
    if (const auto* text = std::get_if<Text>(&element)) {
        static_cast<TextLabel*>(own_)->setContent(*text, text->color.value_or(foreground));
    } else if (const auto* field = std::get_if<TextField>(&element)) {
        static_cast<AddressField*>(own_)->setContent(*field);
    } else if (const auto* indicator = std::get_if<ProgressIndicator>(&element)) {
        static_cast<Spinner*>(own_)->setContent(*indicator, foreground);
    } else if (const auto* symbol = std::get_if<Symbol>(&element)) {
        static_cast<SymbolIcon*>(own_)->setContent(*symbol);
    } else if (const auto* stack = std::get_if<Stack>(&element)) {
        updateStack(*stack, foreground);
        if (auto* group = dynamic_cast<SpokenGroup*>(own_)) group->setWords(wordsOf(view));
    } else if (const auto* button = std::get_if<Button>(&element)) {
        auto* made = static_cast<ActionButton*>(own_);
        const View& label = button->label.front();
        const auto* disabled = modifierOf<Disabled>(view);
        children_.front().update(label, foreground);
        made->setContent(button->action, wordsOf(label), isBusy(label));
        made->setDisabledInPlace(disabled != nullptr && disabled->disabled);
    } else if (const auto* area = std::get_if<ScrollArea>(&element)) {
        own_->setMaximumHeight(area->maximumHeight);
        const QString name = QString::fromStdString(area->accessibleName);
        if (name != own_->accessibleName()) own_->setAccessibleName(name);  // Each call is announced.
        children_.front().update(area->content.front(), foreground);
    }

    auto box = boxes_.begin();
    for (const Modifier& modifier : view.modifiers()) {
        if (Box::shows(modifier)) (*box++)->setModifier(modifier);
    }
}

void RenderedView::remove() const {
    if (widget() == nullptr) return;
    widget()->hide();
    widget()->setParent(nullptr);
    widget()->deleteLater();  // It may be the button whose press leads here.
}

}  // namespace platform
