// Checks the oracle and the generator by examples.
#include "tests/end_to_end/random_cases/oracle.h"

#include <gtest/gtest.h>

#include "tests/end_to_end/random_cases/case_generator.h"

namespace end_to_end {
namespace {

using Lines = std::vector<std::string>;

constexpr const char* base = "http://w.example";

Case aMac() {
    return {.brand = "Apple M1 Pro\n",
            .overview = "Hardware:\n\n      Chip: Apple M1 Pro Max\n",
            .memory = "17179869184\n",
            .displays = "      Chipset Model: Apple M1 GPU\n",
            .disk = "Filesystem Size\n/dev/disk3s1s1 494G\n",
            .addressTail = "",
            .members = {{"success", "true"}},
            .body = ""};
}

TEST(Oracle, GivesTheFiveValuesOfAMac) {
    EXPECT_EQ(expectedBehaviour(aMac(), base).values,
              (Lines{"macOS", "Apple M1 Pro Max", "Apple M1 GPU 4GB", "16 GB DDR4", "494 GB SSD"}));
}

TEST(Oracle, IgnoresTheOverviewOfAnIntelMac) {
    Case round = aMac();
    round.brand = "Intel(R) Core(TM) i7\n";
    round.disk = "Filesystem Size\n/dev/disk1 466Gi\n";
    EXPECT_EQ(expectedBehaviour(round, base).values[1], "Intel(R) Core(TM) i7");
    EXPECT_EQ(expectedBehaviour(round, base).values[4], "512 GB SSD");
}

TEST(Oracle, GivesTheFallbacksForInvalidUtf8) {
    Case round = aMac();
    round.brand = round.overview = round.memory = round.displays = round.disk = "\xFF";
    EXPECT_EQ(expectedBehaviour(round, base).values,
              (Lines{"macOS", "Unknown", "Unknown 4GB", "8 GB DDR4", "512 GB SSD"}));
}

TEST(Oracle, OpensThePageAndEndsAfterASuccess) {
    Case round = aMac();
    round.members["hardware_id"] = "42";
    round.members["redirect_url"] = "\"/results\"";
    const ExpectedBehaviour expected = expectedBehaviour(round, base);
    EXPECT_EQ(expected.log,
              (Lines{"📤 Sending hardware data to: http://w.example/save-detected-hardware/", "📥 Response status: 200",
                     R"(📥 Response body: {"hardware_id": 42, "redirect_url": "/results", "success": true})",
                     "✅ Opened URL: http://w.example/results?hardware_id=42", "📋 Hardware ID: 42"}));
    EXPECT_EQ(expected.pages, Lines{"http://w.example/results?hardware_id=42"});
    EXPECT_TRUE(expected.ends);
}

TEST(Oracle, GivesTheReasonOfARefusal) {
    Case round = aMac();
    round.status = 500;
    round.members = {{"success", "false"}, {"error", "\"disk full\""}};
    const ExpectedBehaviour expected = expectedBehaviour(round, base);
    EXPECT_EQ(expected.log,
              (Lines{"📤 Sending hardware data to: http://w.example/save-detected-hardware/", "📥 Response status: 500",
                     "❌ Server returned status: 500", R"(📥 Response body: {"error": "disk full", "success": false})",
                     "❌ Server returned error: disk full", "❌ Final error: disk full",
                     "❌ Failed to send hardware data. Check the console output above for details."}));
    EXPECT_TRUE(expected.pages.empty());
    EXPECT_FALSE(expected.ends);
}

TEST(Oracle, DoublesASlashAtTheEndOfTheAddress) {
    Case round = aMac();
    round.addressTail = "/";
    EXPECT_EQ(expectedBehaviour(round, base).target, "//save-detected-hardware/");
}

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
}  // namespace end_to_end
