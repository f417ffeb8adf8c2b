// A scroll area as high as its content, up to a limit, that gives way when space is short.
#pragma once

#include <QScrollArea>

namespace platform {

class FlexibleScrollArea : public QScrollArea {
  public:
    explicit FlexibleScrollArea(QWidget* parent);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
};

}  // namespace platform
