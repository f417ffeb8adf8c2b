#include "platform/qt/window/widgets/spoken_group.h"

namespace platform {

namespace {

#if QT_VERSION >= QT_VERSION_CHECK(6, 8, 0)

constexpr QAccessible::Role announcedRole = QAccessible::Grouping;  // A notification would be said twice.

void announce(SpokenGroup* group) {
    QAccessibleAnnouncementEvent event(group, group->accessibleName());
    QAccessible::updateAccessibility(&event);
}

#else

// Screen readers on Linux say a notification that is shown, wherever the focus is. VoiceOver does not.
constexpr QAccessible::Role announcedRole = QAccessible::Notification;

void announce(SpokenGroup* group) {
    if (!group->isVisible()) return;  // The toolkit will tell when it is shown.
    QAccessibleEvent event(group, QAccessible::ObjectShow);
    QAccessible::updateAccessibility(&event);
}

#endif

}  // namespace

SpokenGroup::SpokenGroup(bool isAnnounced) : isAnnounced_(isAnnounced) {}

void SpokenGroup::setWords(const QString& words) {
    if (words == accessibleName()) return;
    setAccessibleName(words);
    if (isAnnounced_) announce(this);
}

QAccessible::Role SpokenGroup::role() const { return isAnnounced_ ? announcedRole : QAccessible::Grouping; }

}  // namespace platform
