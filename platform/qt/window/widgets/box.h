// A widget around another, for one modifier of a view.
#pragma once

#include <QWidget>
#include <optional>

#include "platform/ui.h"

namespace platform {

[[nodiscard]] Qt::Alignment toolkitAlignment(Alignment alignment);

// Shows a padding, a stretch, a frame or a background around one child.
class Box : public QWidget {
  public:
    // Whether a box shows `modifier`; the renderer itself handles the others.
    [[nodiscard]] static bool shows(const Modifier& modifier);

    // `fills` tells whether the content takes all the width that it is offered.
    Box(QWidget* content, bool fills, const Modifier& modifier, QWidget* parent);

    // Sets a padding or a background; the alignment and the width stay.
    void setModifier(const Modifier& modifier);

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    std::optional<Background> background_;
};

}  // namespace platform
