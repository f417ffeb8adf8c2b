// For desktops of X11 and Wayland: windows without a frame, and keys instead of menus.
#include "platform/qt/window/desktop_conventions.h"

#include <QShortcut>
#include <QWidget>

namespace platform::desktopConventions {

void dress(QWidget& window) {
    window.setWindowFlag(Qt::FramelessWindowHint);
    for (const Qt::Key key : {Qt::Key_Q, Qt::Key_W}) {
        QObject::connect(new QShortcut(QKeySequence(Qt::CTRL | key), &window), &QShortcut::activated, &window,
                         &QWidget::close);
    }
}

// The toolkit has sent the frame already.
void putOnScreen(QWidget&) {}

void addMenus() {}

bool usesThePlatformsScrollBars() { return false; }

bool applicationEndsWithItsWindow() { return true; }

}  // namespace platform::desktopConventions
