// Prints every figure with its floor and its target. With --check it ends with 1 if a target is missed.
//   bench <file of services_benchmark> <file of window_benchmark> <home folder with many fonts> [--check]
#include <algorithm>
#include <cstdio>
#include <fstream>
#include <map>
#include <sstream>
#include <string>

#include "benchmarks/figure.h"
#include "benchmarks/whole_process.h"

namespace {

using benchmarks::Figure;
using benchmarks::Samples;

constexpr int rounds = 15;

// True for the rows that summarise others: "detect/real_time_median".
bool isAggregate(const std::string& name) {
    const std::string kind = name.substr(name.rfind('_') + 1);
    return kind == "mean" || kind == "median" || kind == "stddev" || kind == "cv" || kind == "BigO" || kind == "RMS";
}

// Reads the comma-separated file of a benchmark: the repetitions of each figure, in nanoseconds.
std::map<std::string, Samples> samplesIn(const char* path, bool processorTime) {
    std::map<std::string, Samples> all;
    std::ifstream file(path);
    for (std::string line; std::getline(file, line);) {
        if (line.empty() || line.front() != '"') continue;
        std::string name = line.substr(1, line.find('"', 1) - 1);
        if (isAggregate(name)) continue;
        name = name.substr(0, std::min(name.find("/iterations"), name.find("/real_time")));
        std::istringstream rest(line.substr(line.find('"', 1) + 2));
        std::string field;
        std::getline(rest, field, ',');  // iterations
        std::getline(rest, field, ',');
        if (processorTime) std::getline(rest, field, ',');
        all[name].values.push_back(std::stod(field));
    }
    return all;
}

Samples scaled(Samples samples, double factor) {
    for (double& value : samples.values) value *= factor;
    return samples;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 4) return 2;
    const auto services = samplesIn(argv[1], false);
    const auto window = samplesIn(argv[2], true);

    constexpr double milliseconds = 1e-6;
    std::vector<Figure> figures = {
        {"detect()",
         "ms",
         scaled(services.at("detect"), milliseconds),
         scaled(services.at("detectFloor"), milliseconds),
         {.ratio = 1.03}},
        {"sendToWebsite, call to return",
         "ms",
         scaled(services.at("send"), milliseconds),
         scaled(services.at("sendFloor"), milliseconds),
         {.ratio = 1.10, .more = 0.3}},
        {"a keystroke to its repaint, processor time",
         "ms",
         scaled(window.at("keystroke"), milliseconds),
         {},
         {.absolute = 0.5}},
    };
    const std::vector<Figure> whole = benchmarks::wholeProcessFigures(rounds, argv[3]);
    figures.insert(figures.begin(), whole.begin(), whole.end());
    benchmarks::print(figures);

    std::printf("\ngrowth: nanoseconds for each byte\n");
    for (const auto* part : {&window, &services}) {
        for (const auto& [name, samples] : *part) {
            const std::size_t slash = name.find('/');
            if (slash == std::string::npos) continue;
            const double size = std::stod(name.substr(slash + 1));
            std::printf("%-40s %10.3f\n", name.c_str(), samples.median() / size);
        }
    }

    const bool allMet = std::all_of(figures.begin(), figures.end(), [](const Figure& each) { return each.isMet(); });
    return argc > 4 && std::string(argv[4]) == "--check" && !allMet ? 1 : 0;
}
