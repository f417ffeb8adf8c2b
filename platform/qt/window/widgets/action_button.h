// A button around any label.
#pragma once

#include <QAbstractButton>
#include <functional>

namespace platform {

class ActionButton : public QAbstractButton {
  public:
    ActionButton();

    // Call once. The label ignores the mouse.
    void setLabel(QWidget* label);

    // `text` is the button's name for screen readers.
    void setContent(std::function<void()> action, const QString& text, bool isBusy);

    [[nodiscard]] bool isBusy() const { return isBusy_; }

    // If the button had the focus, it gives it to no other element, and gets it back when enabled, unless the focus has
    // gone elsewhere meanwhile.
    void setDisabledInPlace(bool isDisabled);

  protected:
    void paintEvent(QPaintEvent* event) override;
    bool event(QEvent* event) override;

  private:
    std::function<void()> action_;
    bool isBusy_ = false;
};

}  // namespace platform
