// The progress indicator.
#pragma once

#include <QBasicTimer>
#include <QWidget>

#include "platform/ui.h"

namespace platform {

class Spinner : public QWidget {
  public:
    explicit Spinner(QWidget* parent);

    void setContent(const ProgressIndicator& indicator, Color color);

  protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void timerEvent(QTimerEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

  private:
    double scale_ = 1;
    Color color_ = Color::primary;
    int step_ = 0;
    QBasicTimer timer_;
};

}  // namespace platform
