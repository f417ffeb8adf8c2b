// Elements that a screen reader reads as one.
#pragma once

#include <QAccessible>
#include <QWidget>

namespace platform {

class SpokenGroup : public QWidget {
  public:
    // Screen readers announce an announced group when it appears and when its words change.
    explicit SpokenGroup(bool isAnnounced);

    void setWords(const QString& words);

    [[nodiscard]] QAccessible::Role role() const;

  private:
    bool isAnnounced_;
};

}  // namespace platform
