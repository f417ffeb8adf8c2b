#include "platform/qt/widgets/spoken_group.h"

#include <QAccessibleWidget>

namespace platform {

namespace {

QAccessibleInterface* makeAccessible(const QString&, QObject* object) {
    auto* group = dynamic_cast<SpokenGroup*>(object);
    if (group == nullptr) return nullptr;
    // Screen readers say a notification when it comes on screen, wherever the focus is.
    return new QAccessibleWidget(group, group->isAnnounced() ? QAccessible::Notification : QAccessible::Grouping);
}

}  // namespace

void installSpokenGroupAccessibility() { QAccessible::installFactory(makeAccessible); }

SpokenGroup::SpokenGroup(QWidget* parent, bool isAnnounced) : QWidget(parent), isAnnounced_(isAnnounced) {}

void SpokenGroup::setWords(const QString& words) {
    if (words == accessibleName()) return;
    setAccessibleName(words);
    if (!isAnnounced_ || !isVisible()) return;
    QAccessibleEvent shownAnew(this, QAccessible::ObjectShow);
    QAccessible::updateAccessibility(&shownAnew);
}

}  // namespace platform
