// A scroll bar that lies over what it scrolls and takes no space from it.
#pragma once

#include <QScrollBar>
#include <QWidget>
#include <optional>

namespace platform {

// Shows, and lets the mouse change, where `scrolled` stands; hidden while there is nothing to scroll.
class SlimScrollBar : public QWidget {
  public:
    SlimScrollBar(QScrollBar* scrolled, QWidget* parent);

    [[nodiscard]] QSize sizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

  private:
    [[nodiscard]] QRectF thumb() const;
    void moveThumbTo(double top);

    QScrollBar* scrolled_;
    std::optional<double> grip_;  // How far below the thumb's top it is held.
};

}  // namespace platform
