// The program with its real back ends, whose window comes and goes as often as the argument says.
#include <QApplication>
#include <cstdlib>

#include "app/content_view.h"
#include "platform/qt/window/accessible_elements.h"
#include "platform/qt/window/main_window.h"

namespace {

// Sees the frame after which the window has appeared.
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
        QCoreApplication::processEvents();  // The hook, and the report that it waits for.
        window.hide();
    }
    return QApplication::exec();  // Until it is ended: whoever counts has the last look.
}
