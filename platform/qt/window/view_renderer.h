// Turns a view's description into widgets and updates them from each newer description.
#pragma once

#include <QBoxLayout>
#include <QWidget>
#include <vector>

#include "platform/qt/window/widgets/box.h"
#include "platform/ui.h"

namespace platform {

// The widgets of a view. A child that keeps its shape and slot keeps its widget.
class RenderedView {
  public:
    // `surrounding` is the foreground around the view.
    RenderedView(const View& view, QWidget* parent, Color surrounding);

    // Whether update() accepts `view`, because it has the same shape.
    [[nodiscard]] bool fits(const View& view) const;

    void update(const View& view, Color surrounding);

    // The outermost one; null for an empty slot or a spacer.
    [[nodiscard]] QWidget* widget() const { return boxes_.empty() ? own_ : boxes_.back(); }

    void remove() const;  // Removes the widgets for good.

  private:
    void make(const View& view, QWidget* parent, Color foreground);
    void updateStack(const Stack& stack, Color foreground);
    void insertInto(QBoxLayout& layout, int index, const View& view, const Stack& stack) const;

    std::vector<int> shape_;
    bool isEmptySlot_ = false;
    QWidget* own_ = nullptr;   // The element's widget.
    std::vector<Box*> boxes_;  // From the inside out.
    std::vector<RenderedView> children_;
};

}  // namespace platform
