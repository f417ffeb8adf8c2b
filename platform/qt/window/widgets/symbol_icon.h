// The symbols: a filled circle with a check mark, a cross or an "i" cut out of it.
#pragma once

#include <QWidget>

#include "platform/ui.h"

namespace platform {

class SymbolIcon : public QWidget {
  public:
    explicit SymbolIcon(QWidget* parent);

    void setContent(const Symbol& symbol);

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    Symbol symbol_{SymbolName::infoCircleFill, Color::primary};
};

}  // namespace platform
