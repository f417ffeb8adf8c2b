// The application's one window: opened, closed, and opened again.
#pragma once

#include <QObject>
#include <QPointer>

#include "platform/qt/window/main_window.h"
#include "platform/ui.h"

namespace platform {

class WindowOpener : public QObject {
  public:
    explicit WindowOpener(WindowDescription scene);
    ~WindowOpener() override;

    // A window with a fresh content, in front of the others. Nothing while there is one.
    void open();

  private:
    WindowDescription scene_;
    QPointer<MainWindow> window_;  // Null once it was closed, which deletes it.
};

}  // namespace platform
