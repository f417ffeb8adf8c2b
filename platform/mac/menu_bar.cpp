#include "platform/mac/menu_bar.h"

#include <QAction>
#include <QApplication>
#include <QKeyEvent>
#include <QMenu>
#include <QMenuBar>
#include <QWidget>

#include "platform/mac/objective_c.h"

namespace platform {

namespace {

QAction* addItem(QMenu& menu, const char* text, const QKeySequence& keys) {
    QAction* item = menu.addAction(QString::fromUtf8(text));
    item->setShortcut(keys);
    item->setMenuRole(QAction::NoRole);  // Otherwise the toolkit may move it because of its text.
    return item;
}

// Sends the item's keys to the focused element, which knows what to do with them.
void addEditItem(QMenu& menu, const char* text, const QKeySequence& keys) {
    const QKeyCombination combination = keys[0];
    QObject::connect(addItem(menu, text, keys), &QAction::triggered, [combination] {
        QWidget* focused = QApplication::focusWidget();
        if (focused == nullptr) return;
        for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
            QKeyEvent event(type, combination.key(), combination.keyboardModifiers());
            QCoreApplication::sendEvent(focused, &event);
        }
    });
}

template <typename Action>
void addWindowItem(QMenu& menu, const char* text, const QKeySequence& keys, Action action) {
    QObject::connect(addItem(menu, text, keys), &QAction::triggered, [action] {
        if (QWidget* window = QApplication::activeWindow()) (window->*action)();
    });
}

void showAboutPanel() {
    const auto application = objectiveC::send<id>(objectiveC::classNamed("NSApplication"), "sharedApplication");
    objectiveC::send(application, "orderFrontStandardAboutPanel:", static_cast<id>(nullptr));
}

}  // namespace

QMenuBar* makeMenuBar() {
    auto* bar = new QMenuBar;

    // The toolkit moves About into the application's own menu.
    QMenu& edit = *bar->addMenu(QStringLiteral("Edit"));
    QAction* about = edit.addAction(QStringLiteral("About Hardware Detector"));
    about->setMenuRole(QAction::AboutRole);
    QObject::connect(about, &QAction::triggered, showAboutPanel);

    // On macOS the toolkit's CTRL is the Command key.
    addEditItem(edit, "Undo", Qt::CTRL | Qt::Key_Z);
    addEditItem(edit, "Redo", Qt::CTRL | Qt::SHIFT | Qt::Key_Z);
    edit.addSeparator();
    addEditItem(edit, "Cut", Qt::CTRL | Qt::Key_X);
    addEditItem(edit, "Copy", Qt::CTRL | Qt::Key_C);
    addEditItem(edit, "Paste", Qt::CTRL | Qt::Key_V);
    addEditItem(edit, "Select All", Qt::CTRL | Qt::Key_A);

    QMenu& window = *bar->addMenu(QStringLiteral("Window"));
    addWindowItem(window, "Close", Qt::CTRL | Qt::Key_W, &QWidget::close);
    addWindowItem(window, "Minimize", Qt::CTRL | Qt::Key_M, &QWidget::showMinimized);
    return bar;
}

}  // namespace platform
