// Light and dark, as a desktop has them.
#pragma once

#include <QFont>
#include <QPalette>

namespace window_test {

enum class Appearance { light, dark };

[[nodiscard]] QPalette paletteOf(Appearance appearance);

// One that every machine draws alike, without its desktop's taste in drawing it.
[[nodiscard]] QFont fixedFont(int pixels = 13);

}  // namespace window_test
