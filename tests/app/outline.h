// Prints a view as indented text: one element per line, with its modifiers in order.
#pragma once

#include <string>

#include "platform/ui.h"

[[nodiscard]] std::string outlineOf(const platform::View& view, int depth = 0);

// The first field in the view; null if there is none.
[[nodiscard]] const platform::TextField* fieldIn(const platform::View& view);
