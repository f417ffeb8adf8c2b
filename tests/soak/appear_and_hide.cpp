// Shows and hides the program's window, with the real back ends, as often as the argument says.
#include <QApplication>
#include <cstdlib>

#include "app/content_view.h"
#include "platform/qt/window/accessible_elements.h"
#include "platform/qt/window/main_window.h"

namespace {

// Notices the first frame, after which the window counts as appeared.
class FirstFrame : public QObject {
  public:
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::UpdateRequest) isPainted = true;
        return false;
    }
    bool isPainted = false;
};

}  // namespace

int main(int argc, char** argv) {
    QApplication toolkit(argc, argv);
    platform::installAccessibleElements();
    const ContentView view;
    platform::MainWindow window(
        {.name = "Soak", .width = 600, .height = 500, .content = [view] {
             return platform::WindowDescription::Content{[view] { return view.body(); }, view.changes};
         }});
    FirstFrame frame;
    window.installEventFilter(&frame);
    const int rounds = std::atoi(argv[1]);
    for (int round = 0; round < rounds; ++round) {
        frame.isPainted = false;
        window.show();
        while (!frame.isPainted) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        QCoreApplication::processEvents();  // Runs the hook, which waits for the report.
        window.hide();
    }
    return QApplication::exec();  // Runs on until it is killed, so that it can be measured at the end.
}
