// Turns a view's description into widgets and updates them from each newer description.
#pragma once

#include <QBoxLayout>
#include <QWidget>
#include <vector>

#include "platform/ui.h"

namespace platform {

// The widgets of a view. A child that keeps its shape and slot keeps its widget.
class RenderedView {
  public:
    // What a view gets from the views around it.
    struct Surroundings {
        Color foreground;
        std::function<void()> afterInput;  // Called when an action or a field's change returns.
    };

    RenderedView(const View& view, QWidget* parent, const Surroundings& surroundings);

    // Whether update() accepts `view`, because it has the same shape.
    [[nodiscard]] bool fits(const View& view) const;

    void update(const View& view, const Surroundings& outer);

    [[nodiscard]] QWidget* widget() const { return outermost_; }  // Null for an empty slot or a spacer.
    void remove();                                                // Takes the widgets away for good.

  private:
    void make(const View& view, QWidget* parent, const Surroundings& surroundings);
    void makeStack(const Stack& stack, const Surroundings& surroundings);
    void labelFields();
    void updateStack(const Stack& stack, const Surroundings& surroundings);
    void insertInto(QBoxLayout& layout, int index, const View& view, const Stack& stack);

    std::vector<int> shape_;
    bool isEmptySlot_ = false;
    QWidget* own_ = nullptr;        // The element's widget.
    QWidget* outermost_ = nullptr;  // The same, or the last box around it.
    std::vector<QWidget*> boxes_;   // From the inside out, one for each layer of modifiers.
    std::vector<RenderedView> children_;
};

}  // namespace platform
