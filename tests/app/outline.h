// A view as indented text: one element a line, with its modifiers in the order in which they apply.
#pragma once

#include <string>

#include "platform/ui.h"

[[nodiscard]] std::string outlineOf(const platform::View& view, int depth = 0);

// The first field anywhere in the view; null when there is none.
[[nodiscard]] const platform::TextField* fieldIn(const platform::View& view);
