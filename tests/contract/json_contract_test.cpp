#include "platform/json.h"

#include <gtest/gtest.h>

#include <array>
#include <limits>
#include <string>
#include <vector>

namespace {

using platform::jsonDataFrom;
using platform::JsonObject;
using platform::jsonObjectFrom;

JsonObject parsed(const std::string& json) { return jsonObjectFrom("{\"a\":" + json + "}").value(); }

TEST(Json, ConvertsToABooleanFromBooleansZeroAndOne) {
    for (const char* json : {"true", "1", "1.0"}) EXPECT_EQ(parsed(json).boolean("a"), true) << json;
    for (const char* json : {"false", "0", "0.0", "-0", "0e5"}) EXPECT_EQ(parsed(json).boolean("a"), false) << json;
    for (const char* json :
         {"2", "-1", "0.5", "0.9999999999999999", "1.0000000000000002", "\"true\"", "null", "[]", "{}"}) {
        EXPECT_EQ(parsed(json).boolean("a"), std::nullopt) << json;
    }
}

TEST(Json, ConvertsToAnIntegerFromNumbersWithoutAFraction) {
    EXPECT_EQ(parsed("42").integer("a"), 42);
    EXPECT_EQ(parsed("42.0").integer("a"), 42);
    EXPECT_EQ(parsed("1e3").integer("a"), 1000);
    EXPECT_EQ(parsed("1.5e1").integer("a"), 15);
    EXPECT_EQ(parsed("1e18").integer("a"), 1000000000000000000);
    EXPECT_EQ(parsed("9007199254740993").integer("a"), 9007199254740993);
    EXPECT_EQ(parsed("-9223372036854775808").integer("a"), INT64_MIN);
    EXPECT_EQ(parsed("true").integer("a"), 1);
    for (const char* json : {"42.5", "41.99999999999999", "1e-1", "1e19", "\"42\"", "null"}) {
        EXPECT_EQ(parsed(json).integer("a"), std::nullopt) << json;
    }
}

TEST(Json, ANumberBeyondSixtyFourBitsIsNoInteger) {
    EXPECT_EQ(parsed("9223372036854775807").integer("a"), INT64_MAX);
    EXPECT_EQ(parsed("-9223372036854775808").integer("a"), INT64_MIN);
    EXPECT_EQ(parsed("-9223372036854774784.0").integer("a"), -9223372036854774784);
    // As a double, the smallest integer equals the numbers just below it.
    for (const char* json :
         {"-9223372036854775808.0", "-9223372036854775809", "-9223372036854775809.0", "-18446744073709551616", "-1e19",
          "9223372036854775808", "9223372036854775808.0", "18446744073709551615", "18446744073709551616",
          "100000000000000000000000000000000000000"}) {
        EXPECT_EQ(parsed(json).integer("a"), std::nullopt) << json;
    }
}

// Some versions of the library round differently by default.
TEST(Json, ANumberWithAFractionIsTheNearestDouble) {
    for (const auto& [json, number] :
         {std::pair("0.9999999999999999", 0.9999999999999999), std::pair("0.1", 0.1), std::pair("5e-324", 5e-324),
          std::pair("1.7976931348623157e308", 1.7976931348623157e308),
          std::pair("123456789012345678.25", 123456789012345678.25),
          std::pair("2.2250738585072011e-308", 2.2250738585072011e-308),
          std::pair("9007199254740993.0", 9007199254740992.0)}) {
        EXPECT_EQ(std::get<double>(*parsed(json).find("a")), number) << json;
    }
}

TEST(Json, OnlyAStringIsAString) {
    EXPECT_EQ(parsed(R"("a\u00e9\ud83d\udd0d\n\u0000")").takeString("a"), std::string("a\u00E9\U0001F50D\n\0", 9));
    EXPECT_EQ(parsed("42").takeString("a"), std::nullopt);
}

TEST(Json, TheFirstOfTwoMembersOfOneNameCounts) { EXPECT_EQ(jsonObjectFrom(R"({"a":1,"\u0061":2})")->integer("a"), 1); }

// Documents with `value` as a member's value, which is kept, and deeper, where it is only checked.
std::vector<std::string> withValue(const std::string& value) {
    return {"{\"a\":" + value + "}", "{\"a\":[" + value + "]}", "{\"a\":[{\"b\":" + value + "}]}"};
}

TEST(Json, ReadsWhatTheWebsiteMaySend) {
    for (const char* json : {"{}", " \t\r\n{} ", R"({"a":1,})", "\xEF\xBB\xBF{}"}) {
        EXPECT_TRUE(jsonObjectFrom(json)) << json;
    }
    for (const char* value : {"[1,]", R"("\u0000")", "1e-400", "\"\x7F\"", "{}", "[]"}) {
        for (const std::string& json : withValue(value)) EXPECT_TRUE(jsonObjectFrom(json)) << json;
    }
}

TEST(Json, RefusesWhatIsNotAnObject) {
    for (const char* json : {"", " ", "1", "\"a\"", "true", "null", "[]", "[{}]", "{", "{,}", "{} x", "{a:1}",
                             "{} // no", "/**/{}", "{\"a\"}", "{\"a\":}", "{\"a\":1 \"b\":2}", "{}}"}) {
        EXPECT_FALSE(jsonObjectFrom(json)) << json;
    }
    EXPECT_FALSE(jsonObjectFrom(std::string("{}\0", 3)));
}

TEST(Json, RefusesWhatIsNotJson) {
    for (const char* value : {"[1,,]",       "[,]",
                              "{,}",         "[",
                              "01",          "+1",
                              ".5",          "5.",
                              "1e",          "'a'",
                              "{a:1}",       "True",
                              "NaN",         "Infinity",
                              "1e400",       "-1e9999",
                              "\"\n\"",      R"("\x41")",
                              R"("\ud800")", R"("\udd0d\ud83d")",
                              "\"\xFF\"",    "\"\xED\xA0\x80\""}) {
        for (const std::string& json : withValue(value)) EXPECT_FALSE(jsonObjectFrom(json)) << json;
    }
}

TEST(Json, ReadsAtMost512Levels) {
    const auto levels = [](std::size_t count) {
        return "{\"a\":" + std::string(count - 1, '[') + std::string(count - 1, ']') + "}";
    };
    EXPECT_TRUE(jsonObjectFrom(levels(512)));
    EXPECT_FALSE(jsonObjectFrom(levels(513)));
}

TEST(Json, KeepsOnlyTheFirstMemberOfEachNameAskedFor) {
    constexpr std::array<std::string_view, 2> keys{"b", "a"};
    const auto object = jsonObjectFrom(R"({"x":1,"a":2,"a":"later","deeper":{"b":3},"b":[4],"\u0062":5})", keys);
    ASSERT_EQ(object->members().size(), 2U);
    EXPECT_EQ(object->integer("a"), 2);
    EXPECT_TRUE(std::holds_alternative<platform::JsonContainer>(*object->find("b")));
}

std::string widened(const std::string& text, std::size_t width, bool littleEndian, const std::string& mark) {
    std::string bytes = mark;
    for (const char character : text) {
        std::string unit(width, '\0');
        unit[littleEndian ? 0 : width - 1] = character;
        bytes += unit;
    }
    return bytes;
}

TEST(Json, ReadsEveryUnicodeEncodingWithAndWithoutByteOrderMark) {
    using namespace std::string_literals;
    for (const auto& [width, littleEndian, mark] :
         {std::tuple(std::size_t{2}, true, "\xFF\xFE"s), std::tuple(std::size_t{2}, false, "\xFE\xFF"s),
          std::tuple(std::size_t{4}, true, "\xFF\xFE\0\0"s), std::tuple(std::size_t{4}, false, "\0\0\xFE\xFF"s)}) {
        for (const std::string& used : {mark, std::string()}) {
            const auto object = jsonObjectFrom(widened(R"({"a":42})", width, littleEndian, used));
            ASSERT_TRUE(object) << width << littleEndian << used.size();
            EXPECT_EQ(object->integer("a"), 42);
        }
    }
}

TEST(Json, RefusesInvalidUtf16AndUtf32) {
    using namespace std::string_literals;
    const std::string start = "\xFF\xFE{\0\"\0"s;
    const std::string end = "\"\0:\0001\0}\0"s;
    ASSERT_TRUE(jsonObjectFrom(start + "a\0"s + end));
    const std::string highSurrogate = "\x3D\xD8"s;
    const std::string lowSurrogate = "\x0D\xDD"s;
    for (const std::string& broken :
         {highSurrogate, highSurrogate + "a\0b\0"s, highSurrogate + highSurrogate, lowSurrogate}) {
        EXPECT_FALSE(jsonObjectFrom(start + broken + end));
    }
    for (const std::string& bytes :
         {"\xFF\xFE"s, "\xFF\xFE{\0}"s, start + highSurrogate, "\0\0\0{\0\0\0}\0"s, "\0\0\0{\0\x11\0\0\0\0\0}"s}) {
        EXPECT_FALSE(jsonObjectFrom(bytes));
    }
    // Beyond U+10FFFF; with its upper bits cut off it would be a character.
    EXPECT_FALSE(jsonObjectFrom("\0\0\0{\0\0\0\"\0\x41\0\x41\0\0\0\"\0\0\0:\0\0\0001\0\0\0}"s));
}

// The text is converted in parts of 64 KiB. With both shifts, some part ends inside a surrogate pair.
TEST(Json, ReadsALongTextInUtf16) {
    for (const std::size_t shift : {0U, 1U}) {
        std::u16string text = u"{\"a\":\"" + std::u16string(shift, u'x');
        std::string expected(shift, 'x');
        for (int count = 0; count < 100'000; ++count) {
            text += u"\U0001F50D\uFEFF";
            expected += "\U0001F50D\uFEFF";
        }
        text += u"\"}";
        std::string bytes;
        for (const char16_t unit : text) {
            bytes += static_cast<char>(unit >> 8U);
            bytes += static_cast<char>(unit & 0xFFU);
        }
        auto object = jsonObjectFrom(bytes);
        ASSERT_TRUE(object);
        EXPECT_TRUE(object->takeString("a") == expected);
    }
}

TEST(Json, WritesMembersInOrderWithoutBlanks) {
    EXPECT_EQ(jsonDataFrom({{"b", "x"}, {"a", std::int64_t{-7}}, {"c", true}, {"n", nullptr}}),
              R"({"b":"x","a":-7,"c":true,"n":null})");
    EXPECT_EQ(jsonDataFrom({}), "{}");
}

TEST(Json, EscapesQuotesBackslashesAndControlCharactersOnly) {
    EXPECT_EQ(jsonDataFrom({{"a", "\"\\\b\f\n\r\t\x01 \u00E9\u2028\U0001F50D"}}),
              "{\"a\":\"\\\"\\\\\\b\\f\\n\\r\\t\\u0001 \u00E9\u2028\U0001F50D\"}");
}

TEST(Json, CannotWriteBrokenTextOrInfiniteNumbers) {
    EXPECT_EQ(jsonDataFrom({{"a", "\xFF"}}), std::nullopt);
    EXPECT_EQ(jsonDataFrom({{"\xFF", "a"}}), std::nullopt);
    EXPECT_EQ(jsonDataFrom({{"a", std::numeric_limits<double>::infinity()}}), std::nullopt);
    EXPECT_EQ(jsonDataFrom({{"a", platform::JsonContainer{}}}), std::nullopt);
}

}  // namespace
