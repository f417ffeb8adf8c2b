#include "benchmarks/figure.h"

#include <algorithm>
#include <cstdio>

namespace benchmarks {

namespace {

std::string textOf(const Target& target) {
    std::string text;
    const auto add = [&text](const char* form, const std::optional<double>& limit) {
        if (!limit) return;
        char part[40];
        std::snprintf(part, sizeof part, form, *limit);
        text += text.empty() ? part : std::string(" or ") + part;
    };
    add("%.2f times", target.ratio);
    add("%.1f more", target.more);
    add("%.1f", target.absolute);
    return text.empty() ? "-" : text;
}

}  // namespace

double Samples::median() const {
    std::vector<double> sorted = values;
    std::sort(sorted.begin(), sorted.end());
    return sorted.empty() ? 0 : sorted[sorted.size() / 2];
}

double Samples::least() const { return values.empty() ? 0 : *std::min_element(values.begin(), values.end()); }
double Samples::most() const { return values.empty() ? 0 : *std::max_element(values.begin(), values.end()); }

bool Figure::isMet() const {
    const double own = program.median();
    if (target.ratio && own <= *target.ratio * floor.median()) return true;
    if (target.more && own <= *target.more + floor.median()) return true;
    if (target.absolute && own <= *target.absolute) return true;
    return !target.ratio && !target.more && !target.absolute;
}

void print(const std::vector<Figure>& figures) {
    std::printf("%-52s %-5s %10s %21s %7s  %-24s %s\n", "figure", "unit", "median", "min - max", "ratio", "at most",
                "met");
    for (const Figure& figure : figures) {
        const auto range = [](const Samples& samples) {
            char text[40];
            std::snprintf(text, sizeof text, "%.2f - %.2f", samples.least(), samples.most());
            return std::string(text);
        };
        char ratio[16] = "-";
        if (figure.floor.median() > 0) {
            std::snprintf(ratio, sizeof ratio, "%.2f", figure.program.median() / figure.floor.median());
        }
        std::printf("%-52s %-5s %10.2f %21s %7s  %-24s %s\n", figure.name.c_str(), figure.unit.c_str(),
                    figure.program.median(), range(figure.program).c_str(), ratio, textOf(figure.target).c_str(),
                    figure.isMet() ? "yes" : "NO");
        if (figure.floor.values.empty()) continue;
        std::printf("%-52s %-5s %10.2f %21s\n", "  floor", "", figure.floor.median(), range(figure.floor).c_str());
    }
}

}  // namespace benchmarks
