#include "platform/qt/window/accessible_elements.h"

#include <QAccessible>
#include <QAccessibleWidget>

#include "platform/qt/window/main_window.h"
#include "platform/qt/window/widgets/action_button.h"
#include "platform/qt/window/widgets/flexible_scroll_area.h"
#include "platform/qt/window/widgets/spoken_group.h"

namespace platform {

namespace {

// Without the parts of its label.
class AccessibleButton : public QAccessibleWidget {
  public:
    explicit AccessibleButton(ActionButton* button) : QAccessibleWidget(button, QAccessible::Button) {}

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
            // Queued, so that the caller gets its answer before the click has effects.
            QMetaObject::invokeMethod(button(), &QAbstractButton::click, Qt::QueuedConnection);
        } else {
            QAccessibleWidget::doAction(name);
        }
    }
    [[nodiscard]] QStringList keyBindingsForAction(const QString&) const override { return {}; }

  private:
    [[nodiscard]] ActionButton* button() const { return static_cast<ActionButton*>(widget()); }
};

// Only its content: a screen reader needs neither scroll bar nor focus ring.
class AccessibleScrollArea : public QAccessibleWidget {
  public:
    explicit AccessibleScrollArea(FlexibleScrollArea* area) : QAccessibleWidget(area, QAccessible::Pane) {}

    [[nodiscard]] int childCount() const override { return 1; }
    [[nodiscard]] QAccessibleInterface* child(int index) const override { return index == 0 ? content() : nullptr; }
    [[nodiscard]] int indexOfChild(const QAccessibleInterface* child) const override {
        return child == content() ? 0 : -1;
    }

  private:
    [[nodiscard]] QAccessibleInterface* content() const {
        return QAccessible::queryAccessibleInterface(static_cast<FlexibleScrollArea*>(widget())->viewport());
    }
};

QAccessibleInterface* makeElement(const QString&, QObject* object) {
    if (auto* window = dynamic_cast<MainWindow*>(object)) return new QAccessibleWidget(window, QAccessible::Window);
    if (auto* button = dynamic_cast<ActionButton*>(object)) return new AccessibleButton(button);
    if (auto* area = dynamic_cast<FlexibleScrollArea*>(object)) return new AccessibleScrollArea(area);
    if (auto* group = dynamic_cast<SpokenGroup*>(object)) return new QAccessibleWidget(group, group->role());
    return nullptr;
}

}  // namespace

void installAccessibleElements() { QAccessible::installFactory(makeElement); }

}  // namespace platform
