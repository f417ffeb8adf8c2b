#include "tests/app/random_cases/case_generator.h"

#include <gtest/gtest.h>

namespace randomCases {
namespace {

TEST(CaseGenerator, DrawsTheSameCasesFromTheSameSeed) {
    CaseGenerator one(7);
    CaseGenerator other(7);
    for (int round = 0; round < 20; ++round) EXPECT_EQ(literalOf(one.next()), literalOf(other.next()));
}

TEST(CaseGenerator, SimplifiesEachCase) {
    CaseGenerator generator(7);
    for (int round = 0; round < 20; ++round) {
        const Case drawn = generator.next();
        for (const Case& simpler : simplerThan(drawn)) EXPECT_NE(literalOf(simpler), literalOf(drawn));
        EXPECT_FALSE(simplerThan(drawn).empty());
    }
}

}  // namespace
}  // namespace randomCases
