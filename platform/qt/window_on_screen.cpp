#include "platform/qt/window_on_screen.h"

#include <QApplication>
#include <utility>

#include "platform/qt/desktop_customs.h"

namespace platform {

WindowOnScreen::WindowOnScreen(WindowGroup scene) : scene_(std::move(scene)) {
    desktopCustoms::addMenus();
    const bool ends = desktopCustoms::applicationEndsWithItsWindow();
    QGuiApplication::setQuitOnLastWindowClosed(ends);
    if (ends) return;
    // A press on the application's icon activates it, even if it has been active all along.
    connect(qApp, &QGuiApplication::applicationStateChanged, this, [this](Qt::ApplicationState state) {
        if (state == Qt::ApplicationActive) open();
    });
}

WindowOnScreen::~WindowOnScreen() { delete window_; }

void WindowOnScreen::open() {
    if (window_ != nullptr) return;
    window_ = new Window(scene_);
    window_->setAttribute(Qt::WA_DeleteOnClose);
    window_->show();
    window_->activateWindow();
}

}  // namespace platform
