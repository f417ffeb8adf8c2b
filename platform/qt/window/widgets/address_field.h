// A single line of text to edit, with a rounded border.
#pragma once

#include <QLineEdit>

#include "platform/ui.h"

namespace platform {

class AddressField : public QLineEdit {
  public:
    explicit AddressField(QWidget* parent);

    // Touches the text only when it is another one: caret, selection, undo history and half-typed input stay.
    void setContent(const TextField& field);

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    std::function<void(const std::string&)> onChange_;
};

}  // namespace platform
