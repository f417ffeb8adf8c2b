// The application on Qt's event loop.
#include "platform/application.h"

#include <unistd.h>

#include <QApplication>
#include <QThreadPool>
#include <csignal>
#include <cstdio>

#include "platform/qt/window/accessible_elements.h"
#include "platform/qt/window/window_opener.h"

namespace platform {

namespace {

// The toolkit would abort, with a core dump, where there is merely no display to show a window on.
void endWhereTheToolkitGivesUp(QtMsgType type, const QMessageLogContext&, const QString& message) {
    std::fprintf(stderr, "%s\n", qPrintable(message));
    if (type == QtFatalMsg) _exit(1);
}

// The toolkit has threads fill large areas, makes them when it sees fit and ends them after half a minute. For a window
// of this size one is plenty, and one that stays needs no timer, and no descriptor when there may be none left.
void keepPaintingSimple() {
    QThreadPool::globalInstance()->setMaxThreadCount(1);
    QThreadPool::globalInstance()->setExpiryTimeout(-1);
}

}  // namespace

void application::run(const WindowDescription& scene) {
    std::signal(SIGCHLD, SIG_DFL);  // A parent that ignored it would keep us from seeing how our children end.
    // The program takes no arguments, and so neither does the toolkit.
    int argumentCount = 1;
    char name[] = "hardware-detector";
    char* arguments[] = {name, nullptr};
    qInstallMessageHandler(endWhereTheToolkitGivesUp);
    QApplication toolkit(argumentCount, arguments);
    QApplication::setApplicationDisplayName(QString::fromStdString(scene.name));
    QGuiApplication::setDesktopFileName("com.velmora.HardwareDetector");  // By which Wayland desktops find the icon.
    keepPaintingSimple();
    installAccessibleElements();

    WindowOpener window(scene);
    window.open();
    const int status = QApplication::exec();
    // Not through exit(): that would take down what requests and commands under way are still using.
    _exit(status);
}

void application::terminate() { QCoreApplication::exit(0); }

}  // namespace platform
