#include "platform/qt/window/widgets/spoken_group.h"

#include <QAccessible>

namespace platform {

SpokenGroup::SpokenGroup(bool isAnnounced) : isAnnounced_(isAnnounced) {}

void SpokenGroup::setWords(const QString& words) {
    if (words == accessibleName()) return;
    setAccessibleName(words);
    if (!isAnnounced_ || !isVisible()) return;
    QAccessibleEvent shownAnew(this, QAccessible::ObjectShow);
    QAccessible::updateAccessibility(&shownAnew);
}

}  // namespace platform
