// The named colours and fonts of ui.h as the toolkit has them.
#pragma once

#include <QColor>
#include <QFont>
#include <QPalette>

#include "platform/ui.h"

namespace platform {

// Light or dark after the window background of `palette`, which follows the desktop's appearance.
[[nodiscard]] QColor toolkitColor(Color color, const QPalette& palette);

// How much larger texts are drawn for a person whose system font is larger than usual; 1 or more.
[[nodiscard]] double textScale();

// The system's own font in the style's size, in logical pixels, which grows with the system font.
[[nodiscard]] QFont toolkitFont(TextStyle style, std::optional<Weight> weight);

}  // namespace platform
