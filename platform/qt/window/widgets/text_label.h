// Text that wraps between words, and inside one that is wider than its space.
#pragma once

#include <QLabel>
#include <QTextLayout>
#include <optional>

#include "platform/ui.h"

namespace platform {

// A QLabel, so that screen readers find a label. It breaks and draws its text itself, because a QLabel lets a long word
// widen the window.
class TextLabel : public QLabel {
  public:
    explicit TextLabel(QWidget* parent);

    void setContent(const Text& content, Color color);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;
    [[nodiscard]] int heightForWidth(int width) const override;

  protected:
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;

  private:
    // Breaks the text into lines of at most `width`. Layouts call it often, mostly with the same width.
    void breakAt(int width) const;
    void forgetLines();

    Color color_ = Color::primary;
    mutable QTextLayout lines_;  // Broken at brokenWidth_.
    mutable std::optional<int> brokenWidth_;
    mutable QSize brokenSize_;
    mutable std::optional<QSize> unbrokenSize_;
};

}  // namespace platform
