// Measures the whole program on a virtual display.
#pragma once

#include <string>
#include <vector>

#include "benchmarks/figure.h"

namespace benchmarks {

// `homeWithFonts` is a home folder in which many fonts are installed.
[[nodiscard]] std::vector<Figure> wholeProcessFigures(int rounds, const std::string& homeWithFonts);

}  // namespace benchmarks
