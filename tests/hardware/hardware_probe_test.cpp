#include <gtest/gtest.h>

#include "hardware/hardware_detector.h"
#include "tests/fakes/fakes.h"

namespace {

using fakes::machine;

constexpr const char* brandString = "/usr/sbin/sysctl -n machdep.cpu.brand_string";
constexpr const char* hardwareOverview = "/usr/sbin/system_profiler SPHardwareDataType";
constexpr const char* memorySize = "/usr/sbin/sysctl -n hw.memsize";
constexpr const char* displaysOverview = "/usr/sbin/system_profiler SPDisplaysDataType";
constexpr const char* diskUsage = "/bin/df -h /";

class HardwareProbe : public testing::Test {
  protected:
    void SetUp() override { fakes::reset(); }
};

TEST_F(HardwareProbe, GivesTheStartingValuesWhenNoCommandCanBeStarted) {
    const HardwareInfo info = HardwareDetector::detect();

    EXPECT_EQ(info.os, "macOS");
    EXPECT_EQ(info.processor, "Unknown");
    EXPECT_EQ(info.graphicsCard, "Unknown");
    EXPECT_EQ(info.ramGB, 8);
    EXPECT_EQ(info.ramType, "DDR4");
    EXPECT_EQ(info.ramFrequency, 2666);
    EXPECT_EQ(info.storageGB, 512);
    EXPECT_EQ(info.storageType, "SSD");
    EXPECT_EQ(info.directxVersion, "Not Applicable");
    EXPECT_EQ(info.gpuMemory, 4);
    // "Unknown" is no Apple chip, so the overview is not read.
    EXPECT_EQ(machine().commandsRun, (std::vector<std::string>{brandString, memorySize, displaysOverview, diskUsage}));
}

TEST_F(HardwareProbe, RunsAllFiveCommandsInOrderOnAnAppleChip) {
    machine().commands[brandString] = "Apple M1\n";

    (void)HardwareDetector::detect();

    EXPECT_EQ(machine().commandsRun,
              (std::vector<std::string>{brandString, hardwareOverview, memorySize, displaysOverview, diskUsage}));
}

TEST_F(HardwareProbe, StartsAgainAtEachCall) {
    machine().commands[memorySize] = "17179869184\n";
    EXPECT_EQ(HardwareDetector::detect().ramGB, 16);
    machine().commands.clear();
    EXPECT_EQ(HardwareDetector::detect().ramGB, 8);
}

struct ProcessorCase {
    const char* name;
    std::optional<std::string> brand;
    std::optional<std::string> overview;
    std::string expected;
};

class Processor : public HardwareProbe, public testing::WithParamInterface<ProcessorCase> {};

TEST_P(Processor, ComesFromTheBrandStringOrTheChipLine) {
    if (GetParam().brand) machine().commands[brandString] = *GetParam().brand;
    if (GetParam().overview) machine().commands[hardwareOverview] = *GetParam().overview;
    EXPECT_EQ(HardwareDetector::detect().processor, GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Table, Processor,
    testing::Values(ProcessorCase{"AnIntelBrandStringIsTrimmedAndKept", "Intel(R) Core(TM) i7\n", "Chip: Apple M1\n",
                                  "Intel(R) Core(TM) i7"},
                    ProcessorCase{"AnAppleBrandStringIsReplacedByTheChipLine", "Apple M1\n",
                                  "      Chip: Apple M1 Pro\n", "Apple M1 Pro"},
                    ProcessorCase{"AnAppleBrandStringStaysWithoutAChipLine", " Apple M1 \r\n", "Processor Name: x\n",
                                  "Apple M1"},
                    ProcessorCase{"AnAppleBrandStringStaysWithoutAnOverview", "Apple M1\n", std::nullopt, "Apple M1"},
                    ProcessorCase{"AppleInTheMiddleOfTheBrandStringAsksForTheChip", "VirtualApple @ 2.50GHz\n",
                                  "Chip: Apple M1\n", "Apple M1"},
                    ProcessorCase{"AnEmptyBrandStringAsksForTheChip", "\n", "Chip: Apple M2\n", "Apple M2"},
                    ProcessorCase{"AnEmptyBrandStringStaysEmptyWithoutAChipLine", "\n", "nothing\n", ""},
                    ProcessorCase{"AnEmptyOutputCounts", "", std::nullopt, ""},
                    ProcessorCase{"LowerCaseAppleDoesNotAskForTheChip", "apple m1\n", "Chip: Apple M1\n", "apple m1"},
                    ProcessorCase{"ABrandStringThatIsNotUtf8GivesUnknown", "\xFF", "Chip: Apple M1\n", "Unknown"},
                    ProcessorCase{"OnlyWhatFollowsTheLastColonIsKept", "Apple\n", "Chip: Apple: M1: Max\n", "Max"},
                    ProcessorCase{"TheLabelIsCaseSensitive", "Apple\n", "CHIP: Apple M1\n", "Apple"},
                    ProcessorCase{"ALabelAtTheLineEndTakesTheNextLineAndKeepsTheBreak", "Apple\n",
                                  "Chip:\n   Apple M1\n", "\n   Apple M1"},
                    ProcessorCase{"TheMatchEndsBeforeACarriageReturn", "Apple\n", "Chip: Apple M1\r\nx\n", "Apple M1"},
                    ProcessorCase{"TheMatchEndsBeforeALineSeparator", "Apple\n", "Chip: Apple M1\u2028x\n", "Apple M1"},
                    ProcessorCase{"ANoBreakSpaceIsTrimmed", "Apple\n", "Chip:\u00A0Apple M1\u00A0\n", "Apple M1"},
                    ProcessorCase{"AZeroWidthSpaceIsNotTrimmed", "Apple\n", "Chip: Apple M1\u200B\n", "Apple M1\u200B"},
                    ProcessorCase{"OnlyWhiteSpaceAfterTheLabelGivesTheEmptyText", "Apple\n", "Chip: \n", ""},
                    ProcessorCase{"TheFirstChipLineCounts", "Apple\n", "Chip: one\nChip: two\n", "one"}),
    [](const auto& row) { return row.param.name; });

struct NumberCase {
    const char* name;
    std::string output;
    std::int64_t expected;
};

class MemorySize : public HardwareProbe, public testing::WithParamInterface<NumberCase> {};

TEST_P(MemorySize, IsCountedInWholeGigabytes) {
    machine().commands[memorySize] = GetParam().output;
    EXPECT_EQ(HardwareDetector::detect().ramGB, GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Table, MemorySize,
    testing::Values(
        NumberCase{"EightGigabytes", "8589934592\n", 8}, NumberCase{"AByteLessIsSeven", "8589934591\n", 7},
        NumberCase{"SixteenGigabytes", "17179869184\n", 16}, NumberCase{"AByteLessIsFifteen", "17179869183\n", 15},
        NumberCase{"NegativeIsCutTowardZero", "-1073741825\n", -1}, NumberCase{"APlusSignIsAccepted", "+8589934592", 8},
        NumberCase{"ZeroIsZero", "0\n", 0}, NumberCase{"BlanksAroundAreTrimmed", " \t17179869184\u2029\r\n", 16},
        NumberCase{"AFractionIsRefused", "8589934592.0\n", 8}, NumberCase{"AUnitIsRefused", "16 GB\n", 8},
        NumberCase{"GroupingIsRefused", "17,179,869,184\n", 8}, NumberCase{"AnEmptyOutputIsRefused", "\n", 8},
        NumberCase{"TwoSignsAreRefused", "+-17179869184\n", 8},
        NumberCase{"OverflowIsRefused", "9223372036854775808\n", 8},
        NumberCase{"TheLargestIsAccepted", "9223372036854775807\n", 8589934591},
        NumberCase{"TheSmallestIsAccepted", "-9223372036854775808\n", -8589934592},
        NumberCase{"InvalidUtf8IsRefused", "\xFF", 8}),
    [](const auto& row) { return row.param.name; });

struct TextCase {
    const char* name;
    std::string output;
    std::string expected;
};

class Graphics : public HardwareProbe, public testing::WithParamInterface<TextCase> {};

TEST_P(Graphics, ComeFromTheChipsetOrTheModelLine) {
    machine().commands[displaysOverview] = GetParam().output;
    EXPECT_EQ(HardwareDetector::detect().graphicsCard, GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Table, Graphics,
    testing::Values(TextCase{"TheChipsetLine", "      Chipset Model: Apple M1 Pro\n      Type: GPU\n", "Apple M1 Pro"},
                    TextCase{"TheChipsetLineThoughAModelLineComesFirst", "Model: x\nChipset Model: y\n", "y"},
                    TextCase{"TheModelLineAlone", "Model: Radeon\n", "Radeon"},
                    TextCase{"TheFirstOfSeveral", "Chipset Model: Intel\nChipset Model: AMD\n", "Intel"},
                    TextCase{"OnlyWhatFollowsTheLastColon", "Chipset Model: a:b: c \n", "c"},
                    TextCase{"NeitherLineGivesUnknown", "Displays:\n", "Unknown"},
                    TextCase{"AnEmptyOutputGivesUnknown", "", "Unknown"}),
    [](const auto& row) { return row.param.name; });

class Storage : public HardwareProbe, public testing::WithParamInterface<NumberCase> {};

TEST_P(Storage, IsTheSizeColumnOfTheLineBelowTheHeader) {
    machine().commands[diskUsage] = GetParam().output;
    EXPECT_EQ(HardwareDetector::detect().storageGB, GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Table, Storage,
                         testing::Values(NumberCase{"AWholeNumberOfG", "Filesystem Size\n/dev/disk1 500G 9G\n", 500},
                                         NumberCase{"AWholeNumberAlone", "h\n/dev/disk1 500 9\n", 500},
                                         NumberCase{"GibibytesAreRefused", "h\n/dev/disk1 466Gi 9\n", 512},
                                         NumberCase{"TerabytesAreRefused", "h\n/dev/disk1 1.8T 9\n", 512},
                                         NumberCase{"AFractionIsRefused", "h\n/dev/disk1 2.0G 9\n", 512},
                                         NumberCase{"ASmallLetterIsRefused", "h\n/dev/disk1 250g 9\n", 512},
                                         NumberCase{"EveryGIsRemoved", "h\n/dev/disk1 G5G0G 9\n", 50},
                                         NumberCase{"ASingleLineGivesTheFallback", "/dev/disk1 500G 9G", 512},
                                         NumberCase{"NoOutputGivesTheFallback", "", 512},
                                         NumberCase{"OneColumnGivesTheFallback", "h\n500G\n", 512},
                                         NumberCase{"RunsOfBlanksAndTabsAreOneSeparator", "h\n  /dev/disk1 \t  250G\n",
                                                    250},
                                         NumberCase{"NoBreakSpacesSeparateToo", "h\n/dev/disk1\u00A0250G\n", 250},
                                         NumberCase{"TheSecondLineCountsNotTheLast", "h\na 1G\nb 2G\n", 1},
                                         NumberCase{"ACarriageReturnStaysInTheColumn", "h\r\na 1G\r\n", 512},
                                         NumberCase{"SignsAreAccepted", "h\na -5G b\n", -5}),
                         [](const auto& row) { return row.param.name; });

}  // namespace
