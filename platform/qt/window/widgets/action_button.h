// A button around any label.
#pragma once

#include <QAbstractButton>
#include <functional>

namespace platform {

class ActionButton : public QAbstractButton {
  public:
    ActionButton();

    // The label stays the same widget for good, and passes every click on.
    void setLabel(QWidget* label);

    // `text` is what a screen reader calls the button: its label in words.
    void setContent(std::function<void()> action, const QString& text, bool isBusy);

    [[nodiscard]] bool isBusy() const { return isBusy_; }

    // A button that is disabled while it has the focus keeps its turn: the focus does not jump to another element, and
    // it comes back unless the person has moved it meanwhile.
    void setDisabledInPlace(bool isDisabled);

    [[nodiscard]] QSize sizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;
    bool event(QEvent* event) override;

  private:
    std::function<void()> action_;
    bool isBusy_ = false;
    bool waitsForFocus_ = false;
};

}  // namespace platform
