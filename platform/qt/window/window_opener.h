// Opens the window, again after it was closed.
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

    // Opens a window with new content in front of the others. Does nothing while there is one.
    void open();

  private:
    WindowDescription scene_;
    QPointer<MainWindow> window_;  // Null after it was closed.
};

}  // namespace platform
