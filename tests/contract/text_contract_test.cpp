#include "platform/text.h"

#include <gtest/gtest.h>

#include "tests/contract/unicode_characters.h"

namespace {

using namespace contractTest;
using namespace platform;
using Pieces = std::vector<std::string_view>;

TEST(Text, WhiteSpaceIsTabAndTheUnicodeSpaces) {
    EXPECT_EQ(charactersThat([](const std::string& c) { return trimmedOfWhitespace(c).empty(); }), whitespace);
}

TEST(Text, WhiteSpaceAndNewlinesIncludeTheLineBreaks) {
    EXPECT_EQ(charactersThat([](const std::string& c) { return trimmedOfWhitespaceAndNewlines(c).empty(); }),
              whitespaceAndNewlines());
}

TEST(Text, ColumnsAreSplitAtWhiteSpaceOnly) {
    EXPECT_EQ(charactersThat([](const std::string& c) { return columnsOf("a" + c + "b").size() == 2; }), whitespace);
}

TEST(Text, TrimsBothEndsOnly) {
    EXPECT_EQ(trimmedOfWhitespace("\u00A0 \ta\u00A0b\u3000 "), "a\u00A0b");
    EXPECT_EQ(trimmedOfWhitespace(" \na\n "), "\na\n");
    EXPECT_EQ(trimmedOfWhitespaceAndNewlines("\r\n a b\u2028"), "a b");
    EXPECT_EQ(trimmedOfWhitespace(""), "");
    EXPECT_EQ(trimmedOfSlashes("///a//b//"), "a//b");
    EXPECT_EQ(trimmedOfSlashes("/ /"), " ");
    EXPECT_EQ(trimmedOfSlashes("////"), "");
}

TEST(Text, TrimmingKeepsInvalidUtf8) {
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

TEST(Text, OnlyWellFormedUtf8IsText) {
    EXPECT_TRUE(isUtf8(""));
    EXPECT_TRUE(isUtf8(std::string("a\0\u00E9\U0001F50D", 8)));
    EXPECT_TRUE(isUtf8("\xEF\xBB\xBFx"));
    for (const char* bytes : {"\xFF", "\x80", "\xC3", "\xC0\x80", "\xED\xA0\x80", "\xF4\x90\x80\x80", "a\xE2\x82"}) {
        EXPECT_FALSE(isUtf8(bytes));
    }
}

}  // namespace
