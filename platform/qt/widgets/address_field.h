// A single line of text to edit, with a rounded border.
#pragma once

#include <QBasicTimer>
#include <QLineEdit>

#include "platform/ui.h"

namespace platform {

class AddressField : public QLineEdit {
  public:
    explicit AddressField(QWidget* parent);

    // Touches the text only when it is another one: caret, selection, undo history and half-typed input stay.
    void setContent(const TextField& field);

  protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

  private:
    void blinkForAWhile();

    int flashTime_;  // The desktop's own, in milliseconds; 0 where carets don't blink.
    QBasicTimer blinking_;
    std::function<void(const std::string&)> onChange_;
};

}  // namespace platform
