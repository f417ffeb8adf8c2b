// For macOS: the title bar is transparent but keeps its three buttons, the menu bar has the keys, and the application
// goes on without its window until its icon in the Dock opens it again.
#include "platform/qt/window/desktop_conventions.h"

#include <QWidget>

#include "platform/mac/menu_bar.h"
#include "platform/mac/objective_c.h"

namespace platform::desktopConventions {

namespace {

// As AppKit declares them: NSWindowTitleHidden, and, since macOS 11, NSTitlebarSeparatorStyleNone.
constexpr long titleHidden = 1;
constexpr long noSeparator = 1;

}  // namespace

// Not by the toolkit's flags: by its documentation they leave the title and extend the content below the title bar.
void dress(QWidget& window) {
    const id view = reinterpret_cast<id>(window.winId());
    const id native = objectiveC::send<id>(view, "window");
    objectiveC::send(native, "setTitleVisibility:", titleHidden);
    objectiveC::send(native, "setTitlebarAppearsTransparent:", static_cast<BOOL>(YES));
    if (objectiveC::responds(native, "setTitlebarSeparatorStyle:")) {
        objectiveC::send(native, "setTitlebarSeparatorStyle:", noSeparator);
    }
}

// Otherwise the system draws and shows the view at the end of the event loop's turn.
void putOnScreen(QWidget& window) {
    objectiveC::send(reinterpret_cast<id>(window.winId()), "displayIfNeeded");
    objectiveC::send(objectiveC::classNamed("CATransaction"), "flush");
}

void addMenus() {
    static QMenuBar* const menuBar = makeMenuBar();
    static_cast<void>(menuBar);
}

bool usesThePlatformsScrollBars() { return true; }

bool applicationEndsWithItsWindow() { return false; }

}  // namespace platform::desktopConventions
