// What is measured of the program as a whole, on a display of its own.
#pragma once

#include <vector>

#include "benchmarks/figure.h"

namespace benchmarks {

[[nodiscard]] std::vector<Figure> wholeProcessFigures(int rounds);

}  // namespace benchmarks
