#include "platform/qt/widgets/action_button.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QEvent>
#include <QKeyEvent>
#include <QVBoxLayout>
#include <utility>

namespace platform {

namespace {

class ActionButtonAccessible : public QAccessibleWidget {
  public:
    explicit ActionButtonAccessible(ActionButton* button) : QAccessibleWidget(button, QAccessible::Button) {}

    [[nodiscard]] QString text(QAccessible::Text kind) const override {
        if (kind == QAccessible::Name) return button()->text();
        return QAccessibleWidget::text(kind);
    }
    [[nodiscard]] int childCount() const override { return 0; }
    [[nodiscard]] QAccessibleInterface* child(int) const override { return nullptr; }
    [[nodiscard]] int indexOfChild(const QAccessibleInterface*) const override { return -1; }
    [[nodiscard]] QAccessibleInterface* childAt(int, int) const override { return nullptr; }

    [[nodiscard]] QAccessible::State state() const override {
        QAccessible::State state = QAccessibleWidget::state();
        state.busy = button()->isBusy();
        return state;
    }

    [[nodiscard]] QStringList actionNames() const override {
        QStringList names;
        if (button()->isEnabled()) names << pressAction();
        return names << QAccessibleWidget::actionNames();
    }
    void doAction(const QString& name) override {
        if (name == pressAction()) {
            // Later, so that whoever asked for it has its answer before the click's consequences begin.
            QMetaObject::invokeMethod(button(), &QAbstractButton::click, Qt::QueuedConnection);
        } else {
            QAccessibleWidget::doAction(name);
        }
    }
    [[nodiscard]] QStringList keyBindingsForAction(const QString&) const override { return {}; }

  private:
    [[nodiscard]] ActionButton* button() const { return static_cast<ActionButton*>(widget()); }
};

QAccessibleInterface* makeAccessible(const QString&, QObject* object) {
    auto* button = dynamic_cast<ActionButton*>(object);
    return button != nullptr ? new ActionButtonAccessible(button) : nullptr;
}

}  // namespace

void installActionButtonAccessibility() { QAccessible::installFactory(makeAccessible); }

ActionButton::ActionButton(QWidget* parent) : QAbstractButton(parent) {
    setFocusPolicy(Qt::StrongFocus);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    connect(this, &QAbstractButton::clicked, this, [this] {
        if (action_) action_();
    });
    // The label's fill shows whether the button is held down.
    connect(this, &QAbstractButton::pressed, this, [this] { update(); });
    connect(this, &QAbstractButton::released, this, [this] { update(); });
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
    if (newText == text()) return;
    setText(newText);
    QAccessibleEvent renamed(this, QAccessible::NameChanged);
    QAccessible::updateAccessibility(&renamed);
}

void ActionButton::setDisabledInPlace(bool isDisabled) {
    if (isDisabled == !isEnabled()) return;
    if (isDisabled && hasFocus()) {
        waitsForFocus_ = true;
        clearFocus();
    }
    setDisabled(isDisabled);
    if (!isDisabled && std::exchange(waitsForFocus_, false) && window()->focusWidget() == nullptr) setFocus();
}

QSize ActionButton::sizeHint() const { return layout()->sizeHint(); }

bool ActionButton::event(QEvent* event) {
    // Return presses a focused button too, as people expect who never learnt about Space.
    if (event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if ((key == Qt::Key_Return || key == Qt::Key_Enter) && !static_cast<QKeyEvent*>(event)->isAutoRepeat()) {
            click();
            return true;
        }
    }
    return QAbstractButton::event(event);
}

// All there is to see is the label, which paints itself: box.cpp.
void ActionButton::paintEvent(QPaintEvent*) {}

}  // namespace platform
