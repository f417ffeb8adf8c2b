// A change of state brings every window up to date.
#include "platform/ui.h"

#include <QApplication>

#include "platform/qt/window_qt.h"

namespace platform {

void stateChanged() {
    if (QCoreApplication::instance() == nullptr) return;  // Before there is a window, nothing can be out of date.
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        if (auto* window = dynamic_cast<Window*>(widget)) window->renderSoon();
    }
}

}  // namespace platform
