// The named colours and fonts of ui.h for the toolkit.
#pragma once

#include <QColor>
#include <QFont>
#include <QPalette>

#include "platform/ui.h"

namespace platform {

// Light or dark like the window background of `palette`.
[[nodiscard]] QColor toolkitColor(Color color, const QPalette& palette);

// How much larger texts are drawn because the system font is larger than usual: 1 to 1.5.
[[nodiscard]] double textScale();

// The system's font in the style's size, scaled by textScale().
[[nodiscard]] QFont toolkitFont(TextStyle style, std::optional<Weight> weight);

}  // namespace platform
