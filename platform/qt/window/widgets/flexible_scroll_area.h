// A scroll area as high as its content, up to a limit, that shrinks when space is short.
#pragma once

#include <QScrollArea>

namespace platform {

// While there is something to scroll it takes the focus, for the arrow and page keys.
class FlexibleScrollArea : public QScrollArea {
  public:
    FlexibleScrollArea();

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

  protected:
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    QWidget* focusRing_;
};

}  // namespace platform
