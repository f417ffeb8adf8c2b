// The application's one window: opened, closed, and opened again.
#pragma once

#include <QObject>
#include <QPointer>

#include "platform/qt/window_qt.h"
#include "platform/ui.h"

namespace platform {

class WindowOnScreen : public QObject {
  public:
    explicit WindowOnScreen(WindowGroup scene);
    ~WindowOnScreen() override;

    // A window with a fresh content, in front of the others. Nothing while there is one.
    void open();

  private:
    WindowGroup scene_;
    QPointer<Window> window_;  // Null once it was closed, which deletes it.
};

}  // namespace platform
