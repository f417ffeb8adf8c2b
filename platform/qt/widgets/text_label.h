// Text that wraps between words, and inside one that is wider than its space.
#pragma once

#include <QLabel>

#include "platform/ui.h"

namespace platform {

// A QLabel for screen readers and nothing else: the label's own wrapping never breaks a word, so that a long one would
// widen the window.
class TextLabel : public QLabel {
  public:
    explicit TextLabel(QWidget* parent);

    void setContent(const Text& text, Color color);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;
    [[nodiscard]] int heightForWidth(int width) const override;

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    Color color_ = Color::primary;
};

}  // namespace platform
