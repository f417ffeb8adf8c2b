// Turns a view's description into widgets, and brings them up to date with each newer description.
#pragma once

#include <QBoxLayout>
#include <QWidget>
#include <vector>

#include "platform/ui.h"

namespace platform {

// One description's widgets. What stays the same kind of element in the same slot of its stack stays the same widget;
// only what differs is changed, made or removed.
class RenderedView {
  public:
    // What the surroundings hand down to a view.
    struct Inherited {
        Color foreground = Color::primary;
    };

    RenderedView(const View& view, QWidget* parent, Inherited inherited);

    // Whether update() can take `view`: the same kind of element with the same kinds of modifiers.
    [[nodiscard]] bool fits(const View& view) const;

    void update(const View& view, Inherited surroundings);

    [[nodiscard]] QWidget* widget() const { return outermost_; }  // Null for an empty slot or a spacer.
    void remove();                                                // Takes the widgets away for good.

  private:
    void make(const View& view, QWidget* parent, Inherited inherited);
    void makeStack(const Stack& stack, Inherited inherited);
    void labelFields();
    void updateStack(const Stack& stack, Inherited inherited);
    void insertInto(QBoxLayout& layout, int index, const View& view, const Stack& stack);

    std::size_t element_ = 0;             // Which alternative of View::Element.
    std::vector<std::size_t> modifiers_;  // Which alternatives of Modifier.
    QWidget* own_ = nullptr;              // The element's widget.
    QWidget* outermost_ = nullptr;        // The same, or the last box around it.
    std::vector<QWidget*> boxes_;         // From the inside out, one for each layer of modifiers.
    std::vector<RenderedView> children_;
};

}  // namespace platform
