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

// Without a display the toolkit would abort with a core dump.
void endWhereTheToolkitGivesUp(QtMsgType type, const QMessageLogContext&, const QString& message) {
    std::fprintf(stderr, "%s\n", qPrintable(message));
    if (type == QtFatalMsg) _exit(1);
}

}  // namespace

void application::run(const WindowDescription& scene) {
    std::signal(SIGCHLD, SIG_DFL);  // If a parent ignored it, exit statuses of children would be lost.
    // The toolkit must not read options either.
    int argumentCount = 1;
    char name[] = "hardware-detector";
    char* arguments[] = {name, nullptr};
    qInstallMessageHandler(endWhereTheToolkitGivesUp);
    QApplication toolkit(argumentCount, arguments);
    QApplication::setApplicationDisplayName(QString::fromStdString(scene.name));
    QGuiApplication::setDesktopFileName("com.velmora.HardwareDetector");  // By which Wayland desktops find the icon.
    // The toolkit fills large areas on threads that it would end after half a minute. New threads need descriptors, and
    // none may be left.
    QThreadPool::globalInstance()->setExpiryTimeout(-1);
    installAccessibleElements();

    WindowOpener window(scene);
    window.open();
    const int status = QApplication::exec();
    // Not exit(), which would destroy what running threads still use.
    _exit(status);
}

void application::terminate() { QCoreApplication::exit(0); }

}  // namespace platform
