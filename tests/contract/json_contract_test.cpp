#include "platform/json.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

using platform::jsonDataFrom;
using platform::JsonObject;
using platform::jsonObjectFrom;
using platform::JsonValue;
using platform::jsonValueFrom;

JsonValue member(const std::string& json) { return *jsonObjectFrom("{\"a\":" + json + "}")->find("a"); }

TEST(Json, ConvertsToABooleanFromBooleansZeroAndOne) {
    for (const char* json : {"true", "1", "1.0"}) EXPECT_EQ(member(json).asBool(), true) << json;
    for (const char* json : {"false", "0", "0.0", "-0", "0e5"}) EXPECT_EQ(member(json).asBool(), false) << json;
    for (const char* json :
         {"2", "-1", "0.5", "0.9999999999999999", "1.0000000000000002", "\"true\"", "null", "[]", "{}"}) {
        EXPECT_EQ(member(json).asBool(), std::nullopt) << json;
    }
}

TEST(Json, ConvertsToAnIntegerFromNumbersWithoutAFraction) {
    EXPECT_EQ(member("42").asInteger(), 42);
    EXPECT_EQ(member("42.0").asInteger(), 42);
    EXPECT_EQ(member("1e3").asInteger(), 1000);
    EXPECT_EQ(member("1.5e1").asInteger(), 15);
    EXPECT_EQ(member("1e18").asInteger(), 1000000000000000000);
    EXPECT_EQ(member("9007199254740993").asInteger(), 9007199254740993);
    EXPECT_EQ(member("-9223372036854775808").asInteger(), INT64_MIN);
    EXPECT_EQ(member("true").asInteger(), 1);
    for (const char* json : {"42.5", "41.99999999999999", "1e-1", "1e19", "\"42\"", "null"}) {
        EXPECT_EQ(member(json).asInteger(), std::nullopt) << json;
    }
}

TEST(Json, ANumberBeyondSixtyFourBitsIsNoInteger) {
    EXPECT_EQ(member("9223372036854775807").asInteger(), INT64_MAX);
    EXPECT_EQ(member("-9223372036854775808").asInteger(), INT64_MIN);
    EXPECT_EQ(member("-9223372036854774784.0").asInteger(), -9223372036854774784);
    // Written as a real number, the smallest integer is the same double as the numbers just below it.
    for (const char* json :
         {"-9223372036854775808.0", "-9223372036854775809", "-9223372036854775809.0", "-18446744073709551616", "-1e19",
          "9223372036854775808", "9223372036854775808.0", "18446744073709551615", "18446744073709551616",
          "100000000000000000000000000000000000000"}) {
        EXPECT_EQ(member(json).asInteger(), std::nullopt) << json;
    }
}

// The nearest double is the same with every version of the library.
TEST(Json, ANumberWithAFractionIsTheNearestDouble) {
    for (const auto& [json, number] :
         {std::pair("0.9999999999999999", 0.9999999999999999), std::pair("0.1", 0.1), std::pair("5e-324", 5e-324),
          std::pair("1.7976931348623157e308", 1.7976931348623157e308),
          std::pair("123456789012345678.25", 123456789012345678.25),
          std::pair("2.2250738585072011e-308", 2.2250738585072011e-308),
          std::pair("9007199254740993.0", 9007199254740992.0)}) {
        EXPECT_EQ(std::get<double>(member(json).content()), number) << json;
    }
}

TEST(Json, OnlyAStringIsAString) {
    EXPECT_EQ(*member(R"("a\u00e9\ud83d\udd0d\n\u0000")").asString(), std::string("a\u00E9\U0001F50D\n\0", 9));
    EXPECT_EQ(member("42").asString(), nullptr);
}

TEST(Json, ListsAndObjectsKeepTheirValuesInOrder) {
    const std::string json = R"({"a":[1,"b",[true,null],{"d":2,"c":[]}],"b":{}})";
    EXPECT_EQ(jsonDataFrom(*jsonObjectFrom(json)), json);
}

TEST(Json, OfTwoMembersOfOneNameTheFirstCounts) {
    EXPECT_EQ(jsonObjectFrom(R"({"a":1,"\u0061":2})")->find("a")->asInteger(), 1);
}

TEST(Json, ReadsWhatTheWebsiteMaySend) {
    for (const char* json : {"{}", "[]", " \t\r\n{} ", "[1,]", R"({"a":1,})", "\xEF\xBB\xBF{}", R"(["\u0000"])",
                             "[1e-400]", "[\"\x7F\"]"}) {
        EXPECT_TRUE(jsonValueFrom(json)) << json;
    }
}

TEST(Json, RefusesWhatIsNotJson) {
    for (const char* json : {"",
                             " ",
                             "1",
                             "\"a\"",
                             "true",
                             "null",
                             "{",
                             "[1,,]",
                             "[,]",
                             "{,}",
                             "{} x",
                             "[01]",
                             "[+1]",
                             "[.5]",
                             "[5.]",
                             "[1e]",
                             "['a']",
                             "{a:1}",
                             "[True]",
                             "[NaN]",
                             "[Infinity]",
                             "[1e400]",
                             "[-1e9999]",
                             "[\"\n\"]",
                             R"(["\x41"])",
                             R"(["\ud800"])",
                             R"(["\udd0d\ud83d"])",
                             "[\"\xFF\"]",
                             "[\"\xED\xA0\x80\"]",
                             "[1] // no",
                             "/**/[]"}) {
        EXPECT_FALSE(jsonValueFrom(json)) << json;
    }
    EXPECT_FALSE(jsonValueFrom(std::string("{}\0", 3)));
}

TEST(Json, GoesFiveHundredAndTwelveLevelsDeep) {
    EXPECT_TRUE(jsonValueFrom(std::string(512, '[') + std::string(512, ']')));
    EXPECT_FALSE(jsonValueFrom(std::string(513, '[') + std::string(513, ']')));
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

TEST(Json, IsReadInEveryUnicodeEncodingWithAndWithoutMark) {
    using namespace std::string_literals;
    for (const auto& [width, littleEndian, mark] :
         {std::tuple(std::size_t{2}, true, "\xFF\xFE"s), std::tuple(std::size_t{2}, false, "\xFE\xFF"s),
          std::tuple(std::size_t{4}, true, "\xFF\xFE\0\0"s), std::tuple(std::size_t{4}, false, "\0\0\xFE\xFF"s)}) {
        for (const std::string& used : {mark, std::string()}) {
            const auto object = jsonObjectFrom(widened(R"({"a":42})", width, littleEndian, used));
            ASSERT_TRUE(object) << width << littleEndian << used.size();
            EXPECT_EQ(object->find("a")->asInteger(), 42);
        }
    }
}

TEST(Json, IsWrittenCompactInTheOrderOfTheMembers) {
    EXPECT_EQ(jsonDataFrom({{"b", "x"}, {"a", JsonValue::Content(std::int64_t{-7})}, {"c", JsonValue::Content(true)}}),
              R"({"b":"x","a":-7,"c":true})");
    EXPECT_EQ(jsonDataFrom({}), "{}");
}

TEST(Json, EscapesQuotesBackslashesAndControlCharactersOnly) {
    EXPECT_EQ(jsonDataFrom({{"a", "\"\\\b\f\n\r\t\x01 \u00E9\u2028\U0001F50D"}}),
              "{\"a\":\"\\\"\\\\\\b\\f\\n\\r\\t\\u0001 \u00E9\u2028\U0001F50D\"}");
}

TEST(Json, CannotWriteBrokenTextOrNumbersThatAreNone) {
    EXPECT_EQ(jsonDataFrom({{"a", "\xFF"}}), std::nullopt);
    EXPECT_EQ(jsonDataFrom({{"\xFF", "a"}}), std::nullopt);
    EXPECT_EQ(jsonDataFrom({{"a", JsonValue::Content(std::numeric_limits<double>::infinity())}}), std::nullopt);
}

}  // namespace
