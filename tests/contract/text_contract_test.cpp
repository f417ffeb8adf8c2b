#include "platform/text.h"

#include <gtest/gtest.h>

#include <set>

namespace {

using namespace platform;
using Pieces = std::vector<std::string_view>;

std::string utf8(char32_t character) {
    const auto byte = [](char32_t value) { return static_cast<char>(static_cast<unsigned char>(value)); };
    if (character < 0x80) return {byte(character)};
    if (character < 0x800) return {byte(0xC0 | (character >> 6)), byte(0x80 | (character & 0x3F))};
    if (character < 0x10000) {
        return {byte(0xE0 | (character >> 12)), byte(0x80 | ((character >> 6) & 0x3F)),
                byte(0x80 | (character & 0x3F))};
    }
    return {byte(0xF0 | (character >> 18)), byte(0x80 | ((character >> 12) & 0x3F)),
            byte(0x80 | ((character >> 6) & 0x3F)), byte(0x80 | (character & 0x3F))};
}

template <typename Matches>
std::set<char32_t> charactersThat(Matches matches) {
    std::set<char32_t> found;
    for (char32_t character = 0; character <= 0x10FFFF; ++character) {
        if (character < 0xD800 || character > 0xDFFF) {
            if (matches(utf8(character))) found.insert(character);
        }
    }
    return found;
}

const std::set<char32_t> whitespace = {0x09,   0x20,   0xA0,   0x1680, 0x2000, 0x2001, 0x2002, 0x2003, 0x2004,
                                       0x2005, 0x2006, 0x2007, 0x2008, 0x2009, 0x200A, 0x202F, 0x205F, 0x3000};
const std::set<char32_t> newlines = {0x0A, 0x0B, 0x0C, 0x0D, 0x85, 0x2028, 0x2029};

std::set<char32_t> both() {
    std::set<char32_t> all = whitespace;
    all.insert(newlines.begin(), newlines.end());
    return all;
}

TEST(Text, WhiteSpaceIsTabAndTheUnicodeSpacesAndNothingElse) {
    EXPECT_EQ(charactersThat([](const std::string& c) { return trimmedOfWhitespace(c).empty(); }), whitespace);
}

TEST(Text, WithNewlinesTheLineBreaksJoinThem) {
    EXPECT_EQ(charactersThat([](const std::string& c) { return trimmedOfWhitespaceAndNewlines(c).empty(); }), both());
}

TEST(Text, ColumnsAreCutAtWhiteSpaceOnly) {
    EXPECT_EQ(charactersThat([](const std::string& c) { return columnsOf("a" + c + "b").size() == 2; }), whitespace);
}

TEST(Text, TrimsBothEndsAndNothingInside) {
    EXPECT_EQ(trimmedOfWhitespace("\u00A0 \ta\u00A0b\u3000 "), "a\u00A0b");
    EXPECT_EQ(trimmedOfWhitespace(" \na\n "), "\na\n");
    EXPECT_EQ(trimmedOfWhitespaceAndNewlines("\r\n a b\u2028"), "a b");
    EXPECT_EQ(trimmedOfWhitespace(""), "");
    EXPECT_EQ(trimmedOfSlashes("///a//b//"), "a//b");
    EXPECT_EQ(trimmedOfSlashes("/ /"), " ");
    EXPECT_EQ(trimmedOfSlashes("////"), "");
}

TEST(Text, BytesThatAreNoTextPassThroughTrimming) {
    EXPECT_EQ(trimmedOfWhitespace("\xFF \x80"), "\xFF \x80");
    EXPECT_EQ(trimmedOfWhitespace("a\xE3\x80"), "a\xE3\x80");
}

TEST(Text, ColumnsDropEmptyPiecesAndPiecesKeepThem) {
    EXPECT_EQ(columnsOf("  a \t b\n c "), (Pieces{"a", "b\n", "c"}));
    EXPECT_EQ(columnsOf(" \t"), Pieces{});
    EXPECT_EQ(piecesOf("a::b:", ':'), (Pieces{"a", "", "b", ""}));
    EXPECT_EQ(piecesOf("", ':'), Pieces{""});
}

TEST(Text, IntegersHaveOneSignAndAsciiDigitsOnly) {
    EXPECT_EQ(integerFrom("+5"), 5);
    EXPECT_EQ(integerFrom("-0"), 0);
    EXPECT_EQ(integerFrom("007"), 7);
    EXPECT_EQ(integerFrom("9223372036854775807"), INT64_MAX);
    EXPECT_EQ(integerFrom("-9223372036854775808"), INT64_MIN);
    for (const char* text : {"", "-", "+", " 5", "5 ", "5\n", "٣", "５", "1_000", "0x10", "1.0", "+-5", "-+5", "--5",
                             "++5", "9223372036854775808", "-9223372036854775809"}) {
        EXPECT_EQ(integerFrom(text), std::nullopt) << text;
    }
}

TEST(Text, TheDotStopsAtEveryLineBreak) {
    EXPECT_EQ(charactersThat([](const std::string& c) { return firstMatch("a.", "a" + c) == std::nullopt; }), newlines);
}

TEST(Text, TheSpaceClassTakesWhiteSpaceAndLineBreaks) {
    EXPECT_EQ(charactersThat([](const std::string& c) { return firstMatch("a\\sb", "a" + c + "b").has_value(); }),
              both());
}

TEST(Text, TheFirstMatchIsGivenWhole) {
    EXPECT_EQ(firstMatch("Chip:\\s*(.+)", "x\n Chip: Apple M1\r\nChip: other"), "Chip: Apple M1");
    EXPECT_EQ(firstMatch("Chip:\\s*(.+)", "Chip:\n\n  Apple"), "Chip:\n\n  Apple");
    EXPECT_EQ(firstMatch("Chip:\\s*(.+)", "Chip: \n"), "Chip: ");
    EXPECT_EQ(firstMatch("Chip:\\s*(.+)", "Chip:"), std::nullopt);
    EXPECT_EQ(firstMatch("Chip:\\s*(.+)", "chip: x"), std::nullopt);
    EXPECT_EQ(firstMatch("Chip:\\s*(.+)", std::string("Chip: a\0b", 9)), std::string("Chip: a\0b", 9));
}

TEST(Text, AVeryLongLineIsMatchedWhole) {
    const std::string line = "Chip: " + std::string(200000, 'x');
    EXPECT_EQ(firstMatch("Chip:\\s*(.+)", line), line);
}

TEST(Text, OnlyWellFormedUtf8IsText) {
    EXPECT_TRUE(isUtf8(""));
    EXPECT_TRUE(isUtf8(std::string("a\0\u00E9\U0001F50D", 8)));
    EXPECT_TRUE(isUtf8("\xEF\xBB\xBFx"));
    for (const char* bytes : {"\xFF", "\x80", "\xC3", "\xC0\x80", "\xED\xA0\x80", "\xF4\x90\x80\x80", "a\xE2\x82"}) {
        EXPECT_FALSE(isUtf8(bytes));
    }
}

TEST(Text, TheWiderEncodingsAreReadAndBrokenOnesRefused) {
    using enum UnicodeEncoding;
    EXPECT_EQ(textFrom(utf16LittleEndian, std::string("a\0\x3D\xD8\x0D\xDD", 6)), "a\U0001F50D");
    EXPECT_EQ(textFrom(utf16BigEndian, std::string("\0a", 2)), "a");
    EXPECT_EQ(textFrom(utf32LittleEndian, std::string("a\0\0\0", 4)), "a");
    EXPECT_EQ(textFrom(utf32BigEndian, std::string("\0\0\0a", 4)), "a");
    EXPECT_EQ(textFrom(utf16LittleEndian, std::string("\x3D\xD8", 2)), std::nullopt);
    EXPECT_EQ(textFrom(utf16LittleEndian, std::string("a\0b", 3)), std::nullopt);
}

}  // namespace
