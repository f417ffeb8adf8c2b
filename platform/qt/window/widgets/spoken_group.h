// Elements that a screen reader takes as one.
#pragma once

#include <QAccessible>
#include <QWidget>

namespace platform {

class SpokenGroup : public QWidget {
  public:
    // An announced one is said when it appears and when its words change.
    explicit SpokenGroup(bool isAnnounced);

    void setWords(const QString& words);

    [[nodiscard]] QAccessible::Role role() const;

  private:
    bool isAnnounced_;
};

}  // namespace platform
