#include "platform/qt/window/window_opener.h"

#include <QApplication>
#include <utility>

#include "platform/qt/window/desktop_conventions.h"

namespace platform {

WindowOpener::WindowOpener(WindowDescription scene) : scene_(std::move(scene)) {
    desktopConventions::addMenus();
    const bool ends = desktopConventions::applicationEndsWithItsWindow();
    QGuiApplication::setQuitOnLastWindowClosed(ends);
    if (ends) return;
    // A press on the application's icon activates it, even if it is active already.
    connect(qApp, &QGuiApplication::applicationStateChanged, this, [this](Qt::ApplicationState state) {
        if (state == Qt::ApplicationActive) open();
    });
}

WindowOpener::~WindowOpener() { delete window_; }

void WindowOpener::open() {
    if (window_ != nullptr) return;
    window_ = new MainWindow(scene_);
    window_->setAttribute(Qt::WA_DeleteOnClose);
    window_->show();
    window_->activateWindow();
}

}  // namespace platform
