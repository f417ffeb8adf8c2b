// Switches between a desktop's light and dark appearance.
#pragma once

#include <QFont>
#include <QPalette>

namespace window_test {

enum class Appearance { light, dark };

[[nodiscard]] QPalette paletteOf(Appearance appearance);

// The font that every machine draws in the same way, without the desktop's settings.
[[nodiscard]] QFont fixedFont(int pixels = 13);

}  // namespace window_test
