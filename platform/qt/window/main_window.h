// The window: shows a view, updates it, and runs its on-appear hook.
#pragma once

#include <QWidget>

#include "platform/qt/window/view_renderer.h"
#include "platform/ui.h"

namespace platform {

class MainWindow : public QWidget {
  public:
    explicit MainWindow(const WindowDescription& scene);

    ~MainWindow() override;

  protected:
    bool event(QEvent* event) override;
    void showEvent(QShowEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;

  private:
    enum class Appearance { awaitsPaint, awaitsNextFrame, done };

    void render();
    void appear();

    WindowDescription::Content content_;
    RenderedView rendered_;
    Appearance appearance_ = Appearance::done;
    std::optional<QPoint> grip_;  // Where the background is held while the window is dragged.
};

}  // namespace platform
