// Draws random cases: realistic outputs and answers with faults here and there.
#pragma once

#include <cstdint>
#include <random>

#include "tests/app/random_cases/case.h"

namespace randomCases {

// The same seed gives the same cases on every system.
class CaseGenerator {
  public:
    explicit CaseGenerator(std::uint64_t seed) : random_(seed) {}

    [[nodiscard]] Case next();

  private:
    [[nodiscard]] std::size_t below(std::size_t count) { return static_cast<std::size_t>(random_() % count); }
    [[nodiscard]] bool onceIn(std::size_t count) { return below(count) == 0; }

    template <std::size_t count>
    [[nodiscard]] std::string oneOf(const char* const (&choices)[count]) {
        return choices[below(count)];
    }

    [[nodiscard]] std::string blanks();
    [[nodiscard]] std::string lineBreak();
    [[nodiscard]] std::string words();
    [[nodiscard]] std::string profile(const char* const* labels, std::size_t count);
    [[nodiscard]] std::string number();
    [[nodiscard]] std::string diskUsage();
    [[nodiscard]] std::string address();
    void spoil(std::string& output);
    void answer(Case& round);

    std::mt19937_64 random_;
};

}  // namespace randomCases
