// Shows and hides the program's window, with the real back ends, as often as the argument says.
#include <QApplication>
#include <cstdlib>

#include "app/content_view.h"
#include "platform/qt/window/accessible_elements.h"
#include "platform/qt/window/main_window.h"

int main(int argc, char** argv) {
    QApplication toolkit(argc, argv);
    platform::installAccessibleElements();
    const ContentView view;
    bool hasAppeared = false;  // And so the reports have been answered, which an earlier hook waits for.
    const auto body = [&] { return view.body().onAppear([&] { hasAppeared = true; }); };
    platform::MainWindow window({.name = "Soak", .width = 600, .height = 500, .content = [&] {
                                     return platform::WindowDescription::Content{body, view.changes};
                                 }});
    const int rounds = std::atoi(argv[1]);
    for (int round = 0; round < rounds; ++round) {
        hasAppeared = false;
        window.show();
        while (!hasAppeared) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        window.hide();
    }
    return QApplication::exec();  // Runs on until it is killed, so that it can be measured at the end.
}
