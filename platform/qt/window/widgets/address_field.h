// A single line of text to edit, with a rounded border.
#pragma once

#include <QLineEdit>

#include "platform/ui.h"

namespace platform {

class AddressField : public QLineEdit {
  public:
    explicit AddressField(QWidget* parent);

    // Sets the text only if it differs, so that caret, selection, undo history and half-typed input stay.
    void setContent(const TextField& field);

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    std::function<void(const std::string&)> onChange_;
};

}  // namespace platform
