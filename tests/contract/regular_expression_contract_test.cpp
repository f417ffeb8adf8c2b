#include "platform/regular_expression.h"

#include <gtest/gtest.h>

#include "tests/contract/unicode_characters.h"

namespace {

using namespace contractTest;
using platform::RegularExpression;

TEST(RegularExpression, TheDotStopsAtEveryLineBreak) {
    const RegularExpression any("a.");
    EXPECT_EQ(charactersThat([&](const std::string& c) { return !any.firstMatchIn("a" + c); }), newlines);
}

TEST(RegularExpression, TheSpaceClassTakesWhiteSpaceAndLineBreaks) {
    const RegularExpression space("a\\sb");
    EXPECT_EQ(charactersThat([&](const std::string& c) { return space.firstMatchIn("a" + c + "b").has_value(); }),
              whitespaceAndNewlines());
}

const RegularExpression chip("Chip:\\s*(.+)");

TEST(RegularExpression, TheFirstMatchIsReturnedWhole) {
    EXPECT_EQ(chip.firstMatchIn("x\n Chip: Apple M1\r\nChip: other"), "Chip: Apple M1");
    EXPECT_EQ(chip.firstMatchIn("Chip:\n\n  Apple"), "Chip:\n\n  Apple");
    EXPECT_EQ(chip.firstMatchIn("Chip: \n"), "Chip: ");
    EXPECT_EQ(chip.firstMatchIn("Chip:"), std::nullopt);
    EXPECT_EQ(chip.firstMatchIn("chip: x"), std::nullopt);
    EXPECT_EQ(chip.firstMatchIn(std::string("Chip: a\0b", 9)), std::string("Chip: a\0b", 9));
}

TEST(RegularExpression, AVeryLongLineIsMatchedWhole) {
    const std::string line = "Chip: " + std::string(200000, 'x');
    EXPECT_EQ(chip.firstMatchIn(line), line);
}

}  // namespace
