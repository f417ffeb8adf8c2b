// A widget around one child: padding, stretch, background and rounded corners.
#pragma once

#include <QMargins>
#include <QWidget>
#include <optional>

#include "platform/ui.h"

namespace platform {

struct BoxLook {
    QMargins padding;
    std::optional<Background> background;
    int cornerRadius = 0;
};

class Box : public QWidget {
  public:
    using QWidget::QWidget;

    // Call once. `alignment` places the child in a box that is wider than the child wants to be.
    void setContent(QWidget* content, Qt::Alignment alignment);

    void setLook(const BoxLook& look);

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    BoxLook look_;
};

}  // namespace platform
