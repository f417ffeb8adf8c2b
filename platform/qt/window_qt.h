// The one window on the screen.
#pragma once

#include <QWidget>

#include "platform/qt/view_renderer.h"
#include "platform/ui.h"

namespace platform {

class Window : public QWidget {
  public:
    explicit Window(const WindowGroup& scene);

    // Brings the window up to date before its next frame, once for however many changes.
    void renderSoon();

    void renderNow();

  protected:
    bool event(QEvent* event) override;
    void showEvent(QShowEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;

  private:
    void appear();

    WindowGroup::Body body_;
    View shown_;
    RenderedView rendered_;
    bool rendersSoon_ = false;
    bool appearsWithFirstFrame_ = false;
    std::optional<QPoint> grip_;  // Where the background is held while the window is moved by hand.
};

}  // namespace platform
