#include "platform/qt/view_renderer.h"

#include <algorithm>

#include "platform/qt/widgets/action_button.h"
#include "platform/qt/widgets/address_field.h"
#include "platform/qt/widgets/box.h"
#include "platform/qt/widgets/flexible_scroll_area.h"
#include "platform/qt/widgets/spinner.h"
#include "platform/qt/widgets/spoken_group.h"
#include "platform/qt/widgets/symbol_icon.h"
#include "platform/qt/widgets/text_label.h"

namespace platform {

namespace {

// As many modifiers as one box can show: padding inside a background inside a width.
struct Layer {
    BoxLook look;
    Qt::Alignment alignment;
    std::optional<int> width;
};

Qt::Alignment toolkitAlignment(Alignment alignment) {
    return alignment == Alignment::leading ? Qt::AlignLeft : Qt::AlignHCenter;
}

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

// The modifiers from the inside out. A padding outside a background needs another box around the first.
std::vector<Layer> layersOf(const std::vector<Modifier>& modifiers) {
    std::vector<Layer> layers;
    const auto layer = [&layers]() -> Layer& {
        if (layers.empty()) layers.emplace_back();
        return layers.back();
    };
    for (const Modifier& modifier : modifiers) {
        if (const auto* padding = std::get_if<Padding>(&modifier)) {
            if (layer().look.background) layers.emplace_back();
            layer().look.padding += marginsOf(*padding);
        } else if (const auto* stretch = std::get_if<Stretch>(&modifier)) {
            layer().alignment = toolkitAlignment(stretch->alignment);
        } else if (const auto* frame = std::get_if<Frame>(&modifier)) {
            layer().alignment = toolkitAlignment(frame->alignment);
            layer().width = frame->width;
        } else if (const auto* background = std::get_if<Background>(&modifier)) {
            layer().look.background = *background;
        } else if (const auto* corners = std::get_if<CornerRadius>(&modifier)) {
            layer().look.cornerRadius = corners->radius;
        }
    }
    return layers;
}

template <typename Kind>
const Kind* modifierOf(const View& view) {
    const Kind* found = nullptr;
    for (const Modifier& modifier : view.modifiers()) {
        if (const auto* match = std::get_if<Kind>(&modifier)) found = match;
    }
    return found;
}

// Whether a view takes all the width it is offered, rather than what its content needs.
bool fillsWidth(const View& view) {
    if (modifierOf<Frame>(view) != nullptr) return false;
    if (modifierOf<Stretch>(view) != nullptr) return true;
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

// All text in a view, for whoever hears it instead of seeing it.
QString wordsOf(const View& view) {
    if (const auto* text = std::get_if<Text>(&view.element())) return QString::fromStdString(text->text);
    QStringList words;
    if (const auto* stack = std::get_if<Stack>(&view.element())) {
        for (const View& child : stack->children) words << wordsOf(child);
    }
    words.removeAll(QString());
    return words.join(QLatin1Char(' '));
}

// Whether something in a view says that work is under way.
bool isBusy(const View& view) {
    if (const auto* stack = std::get_if<Stack>(&view.element())) {
        return std::any_of(stack->children.begin(), stack->children.end(), isBusy);
    }
    return std::holds_alternative<ProgressIndicator>(view.element());
}

RenderedView::Inherited inside(const View& view, RenderedView::Inherited inherited) {
    if (const auto* foreground = modifierOf<Foreground>(view)) inherited.foreground = foreground->color;
    return inherited;
}

std::vector<std::size_t> kindsOf(const std::vector<Modifier>& modifiers) {
    std::vector<std::size_t> kinds;
    kinds.reserve(modifiers.size());
    for (const Modifier& modifier : modifiers) kinds.push_back(modifier.index());
    return kinds;
}

QBoxLayout::Direction directionOf(const Stack& stack) {
    return stack.axis == Axis::vertical ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight;
}

// For widgets with an accessible element of their own (accessible_elements.cpp). Newer versions of the toolkit make the
// element as soon as the widget gets its parent, and before the constructor is through it is only a QWidget.
template <typename Widget>
Widget* placed(Widget* made, QWidget* parent) {
    made->setParent(parent);
    return made;
}

}  // namespace

RenderedView::RenderedView(const View& view, QWidget* parent, Inherited inherited) {
    make(view, parent, inside(view, inherited));
    update(view, inherited);
}

bool RenderedView::fits(const View& view) const {
    return view.element().index() == element_ && kindsOf(view.modifiers()) == modifiers_;
}

void RenderedView::make(const View& view, QWidget* parent, Inherited inherited) {
    element_ = view.element().index();
    modifiers_ = kindsOf(view.modifiers());

    const View::Element& element = view.element();
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
        makeStack(*stack, inherited);
    } else if (const auto* button = std::get_if<Button>(&element)) {
        auto* made = placed(new ActionButton, parent);
        own_ = made;
        children_.emplace_back(button->label.front(), made, inherited);
        made->setLabel(children_.front().widget());
    } else if (const auto* area = std::get_if<ScrollArea>(&element)) {
        auto* made = placed(new FlexibleScrollArea, parent);
        own_ = made;
        children_.emplace_back(area->content.front(), made->viewport(), inherited);
        made->setWidget(children_.front().widget());
        made->widget()->installEventFilter(made);
        made->widget()->setAutoFillBackground(false);
    }

    outermost_ = own_;
    if (own_ == nullptr) return;
    for (const Layer& layer : layersOf(view.modifiers())) {
        auto* box = new Box(parent);
        const bool contentFills = boxes_.empty() ? fillsWidth(View(element)) : true;
        box->setContent(outermost_, contentFills ? Qt::Alignment() : layer.alignment);
        if (layer.width) box->setFixedWidth(*layer.width);
        boxes_.push_back(box);
        outermost_ = box;
    }
}

void RenderedView::makeStack(const Stack& stack, Inherited inherited) {
    auto* layout = new QBoxLayout(directionOf(stack), own_);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(stack.spacing);
    children_.reserve(stack.children.size());
    for (const View& child : stack.children) {
        children_.emplace_back(child, own_, inherited);
        children_.back().insertInto(*layout, layout->count(), child, stack);
    }
    labelFields();
}

// A field that is called by the text before it has that text for its label.
void RenderedView::labelFields() {
    for (std::size_t slot = 1; slot < children_.size(); ++slot) {
        auto* label = dynamic_cast<TextLabel*>(children_[slot - 1].own_);
        auto* field = dynamic_cast<AddressField*>(children_[slot].own_);
        if (label != nullptr && field != nullptr && label->text() == field->accessibleName()) label->setBuddy(field);
    }
}

void RenderedView::insertInto(QBoxLayout& layout, int index, const View& view, const Stack& stack) {
    if (std::holds_alternative<Spacer>(view.element())) {
        layout.insertStretch(index, 1);
    } else if (outermost_ != nullptr) {
        const bool vertical = stack.axis == Axis::vertical;
        const bool fills = vertical && fillsWidth(view);
        const Qt::Alignment across = vertical ? toolkitAlignment(stack.alignment) : Qt::AlignVCenter;
        layout.insertWidget(index, outermost_, 0, fills ? Qt::Alignment() : across);
    }
}

void RenderedView::updateStack(const Stack& stack, Inherited inherited) {
    auto& layout = static_cast<QBoxLayout&>(*own_->layout());
    int index = 0;  // Of the layout's items: empty slots have none.
    for (std::size_t slot = 0; slot < stack.children.size(); ++slot) {
        RenderedView& rendered = children_[slot];
        const View& child = stack.children[slot];
        if (rendered.fits(child)) {
            rendered.update(child, inherited);
        } else {
            rendered.remove();
            rendered = RenderedView(child, own_, inherited);
            rendered.insertInto(layout, index, child, stack);
            if (rendered.widget() != nullptr) rendered.widget()->show();
        }
        if (!std::holds_alternative<Nothing>(child.element())) ++index;
    }
}

void RenderedView::update(const View& view, Inherited surroundings) {
    const Inherited inherited = inside(view, surroundings);
    const View::Element& element = view.element();
    if (const auto* text = std::get_if<Text>(&element)) {
        static_cast<TextLabel*>(own_)->setContent(*text, text->color.value_or(inherited.foreground));
    } else if (const auto* field = std::get_if<TextField>(&element)) {
        static_cast<AddressField*>(own_)->setContent(*field);
    } else if (const auto* indicator = std::get_if<ProgressIndicator>(&element)) {
        static_cast<Spinner*>(own_)->setContent(*indicator, inherited.foreground);
    } else if (const auto* symbol = std::get_if<Symbol>(&element)) {
        static_cast<SymbolIcon*>(own_)->setContent(*symbol);
    } else if (const auto* stack = std::get_if<Stack>(&element)) {
        updateStack(*stack, inherited);
        if (auto* group = dynamic_cast<SpokenGroup*>(own_)) group->setWords(wordsOf(view));
    } else if (const auto* button = std::get_if<Button>(&element)) {
        auto* made = static_cast<ActionButton*>(own_);
        const auto* disabled = modifierOf<Disabled>(view);
        children_.front().update(button->label.front(), inherited);
        made->setContent(button->action, wordsOf(button->label.front()), isBusy(button->label.front()));
        made->setDisabledInPlace(disabled != nullptr && disabled->disabled);
    } else if (const auto* area = std::get_if<ScrollArea>(&element)) {
        own_->setMaximumHeight(area->maximumHeight);
        own_->setAccessibleName(QString::fromStdString(area->accessibleName));
        children_.front().update(area->content.front(), inherited);
    }

    const std::vector<Layer> layers = layersOf(view.modifiers());
    for (std::size_t box = 0; box < boxes_.size(); ++box) static_cast<Box*>(boxes_[box])->setLook(layers[box].look);
}

void RenderedView::remove() {
    if (outermost_ == nullptr) return;
    outermost_->hide();
    outermost_->setParent(nullptr);
    outermost_->deleteLater();  // It may be the very button whose press leads here.
}

}  // namespace platform
