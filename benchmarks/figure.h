// A measured figure with its floor, and the table of all figures.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace benchmarks {

struct Samples {
    std::vector<double> values;

    [[nodiscard]] double median() const;
    [[nodiscard]] double least() const;
    [[nodiscard]] double most() const;
};

// Met if the figure is within any of the limits that are set.
struct Target {
    std::optional<double> ratio = {};     // to the floor
    std::optional<double> more = {};      // than the floor, in the figure's unit
    std::optional<double> absolute = {};  // in the figure's unit
};

struct Figure {
    std::string name;
    std::string unit;
    Samples program;
    Samples floor;  // empty if there is none
    Target target;

    [[nodiscard]] bool isMet() const;  // by the medians; true without a target
};

// Prints one row for each figure.
void print(const std::vector<Figure>& figures);

}  // namespace benchmarks
