// A scroll bar that lies over the content, for platforms that have none of this kind.
#pragma once

#include <QScrollBar>
#include <QWidget>
#include <optional>

namespace platform {

// Shows the position of `scrolled` and lets the mouse change it; hidden while there is nothing to scroll.
class SlimScrollBar : public QWidget {
  public:
    static constexpr int thickness = 11;

    SlimScrollBar(QScrollBar* scrolled, QWidget* parent);

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
