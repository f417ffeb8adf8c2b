#include "platform/qt/window/widgets/action_button.h"

#include <QAccessible>
#include <QEvent>
#include <QKeyEvent>
#include <QPointer>
#include <QVBoxLayout>
#include <utility>

namespace platform {

ActionButton::ActionButton() {
    setFocusPolicy(Qt::TabFocus);  // A press by mouse leaves the focus, and its ring, where it is.
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    connect(this, &QAbstractButton::clicked, this, [this] {
        const auto action = action_;  // A copy, because the action may replace it.
        if (action) action();
    });
}

void ActionButton::setLabel(QWidget* label) {
    label->setAttribute(Qt::WA_TransparentForMouseEvents);
    layout()->addWidget(label);
}

void ActionButton::setContent(std::function<void()> action, const QString& newText, bool isBusy) {
    action_ = std::move(action);
    if (isBusy != std::exchange(isBusy_, isBusy)) {
        QAccessible::State changed;
        changed.busy = true;
        QAccessibleStateChangeEvent busyChanged(this, changed);
        QAccessible::updateAccessibility(&busyChanged);
    }
    if (newText != text()) setText(newText);
}

void ActionButton::setDisabledInPlace(bool isDisabled) {
    static QPointer<ActionButton> waitsForFocus;  // The button that last had the focus when it was disabled.
    if (isDisabled == !isEnabled()) return;
    if (isDisabled && hasFocus()) {
        waitsForFocus = this;
        clearFocus();
    }
    setDisabled(isDisabled);
    if (isDisabled || waitsForFocus != this) return;
    waitsForFocus = nullptr;
    if (window()->focusWidget() == nullptr) setFocus();
}

bool ActionButton::event(QEvent* event) {
    // Return presses a focused button too, not only Space.
    if (event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if ((key == Qt::Key_Return || key == Qt::Key_Enter) && !static_cast<QKeyEvent*>(event)->isAutoRepeat()) {
            click();
            return true;
        }
    }
    return QAbstractButton::event(event);
}

// The label paints everything: box.cpp.
void ActionButton::paintEvent(QPaintEvent*) {}

}  // namespace platform
