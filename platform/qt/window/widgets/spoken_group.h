// Elements that a screen reader takes as one.
#pragma once

#include <QWidget>

namespace platform {

class SpokenGroup : public QWidget {
  public:
    // An announced one is said when it appears and when its words change.
    explicit SpokenGroup(bool isAnnounced);

    void setWords(const QString& words);

    [[nodiscard]] bool isAnnounced() const { return isAnnounced_; }

  private:
    bool isAnnounced_;
};

}  // namespace platform
