#include "submit/page_to_open.h"

#include <gtest/gtest.h>

namespace {

struct Case {
    const char* name;
    std::string answer;
    std::string base;
    std::string page;  // Empty for none.
    std::string id = "42";
    std::string unusableRedirect = "";
};

constexpr const char* site = "http://site.example";

class PageToOpenTable : public testing::TestWithParam<Case> {};

TEST_P(PageToOpenTable, IsChosenByTheAnswerAndTheBaseUrl) {
    const PageToOpen choice = pageToOpen(platform::jsonObjectFrom(GetParam().answer).value(), GetParam().base);

    EXPECT_EQ(choice.page ? choice.page->absoluteString() : "", GetParam().page);
    EXPECT_EQ(choice.hardwareId.value_or(""), GetParam().id);
    EXPECT_EQ(choice.unusableRedirect.value_or(""), GetParam().unusableRedirect);
}

INSTANTIATE_TEST_SUITE_P(
    Table, PageToOpenTable,
    testing::Values(
        Case{"NoRedirect", R"({"hardware_id":42})", site, "http://site.example?hardware_id=42"},
        Case{"NoRedirectAndABaseWithAQuery", R"({"hardware_id":42})", "http://site.example/?a=1",
             "http://site.example/?a=1&hardware_id=42"},
        Case{"NoRedirectAndNoId", "{}", site, site, ""},
        Case{"NoRedirectKeepsTheBasesSlashes", R"({"hardware_id":42})", "http://site.example//",
             "http://site.example//?hardware_id=42"},
        Case{"AnEmptyRedirectIsIgnored", R"({"redirect_url":"","hardware_id":"abc"})", site,
             "http://site.example?hardware_id=abc", "abc"},
        Case{"ANumberIsNoRedirect", R"({"redirect_url":7,"hardware_id":"abc"})", site,
             "http://site.example?hardware_id=abc", "abc"},
        Case{"NullIsNoRedirect", R"({"redirect_url":null,"hardware_id":42})", site,
             "http://site.example?hardware_id=42"},
        Case{"RelativeWithoutSlash", R"({"redirect_url":"results","hardware_id":42})", site,
             "http://site.example/results?hardware_id=42"},
        Case{"RelativeWithSlash", R"({"redirect_url":"/results","hardware_id":42})", site,
             "http://site.example/results?hardware_id=42"},
        Case{"RelativeWithAQuery", R"({"redirect_url":"/results?x=1","hardware_id":42})", site,
             "http://site.example/results?x=1&hardware_id=42"},
        Case{"RelativeThatContainsTheId", R"({"redirect_url":"/results?hardware_id=7","hardware_id":42})", site,
             "http://site.example/results?hardware_id=7"},
        Case{"RelativeThatContainsHardwareIdInAnotherWord",
             R"({"redirect_url":"/page?my_hardware_ids=1","hardware_id":42})", site,
             "http://site.example/page?my_hardware_ids=1"},
        Case{"RelativeWithoutId", R"({"redirect_url":"results"})", site, "http://site.example/results", ""},
        Case{"AnArrayIsNoId", R"({"redirect_url":"results","hardware_id":[42]})", site, "http://site.example/results",
             ""},
        Case{"RelativeTrimsTheBasesSlashes", R"({"redirect_url":"a"})", "http://site.example//",
             "http://site.example/a", ""},
        Case{"AbsoluteHttpsStaysWithoutTheId", R"({"redirect_url":"https://other.example/x","hardware_id":42})", site,
             "https://other.example/x"},
        Case{"AbsoluteHttpStaysWithoutTheId", R"({"redirect_url":"http://other.example","hardware_id":42})", site,
             "http://other.example"},
        Case{"ASchemeInCapitalsIsAPath", R"({"redirect_url":"HTTPS://other.example","hardware_id":42})", site,
             "http://site.example/HTTPS://other.example?hardware_id=42"},
        Case{"ARelativeRedirectThatDoesNotParseGivesTheBase", R"({"redirect_url":"a b","hardware_id":42})",
             "http://site.example/", "http://site.example/", "42", "a b"},
        Case{"AnAbsoluteRedirectThatDoesNotParseGivesTheBase", R"({"redirect_url":"http://a b/"})", site, site, "",
             "http://a b/"},
        Case{"AnIdThatDoesNotParseGivesTheBaseWithoutAWarning", R"({"hardware_id":"a b"})", site, site, "a b"},
        Case{"ABaseThatDoesNotParseGivesNothing", "{}", "not a url", "", ""},
        Case{"AnAbsoluteRedirectDoesNotNeedTheBase", R"({"redirect_url":"http://other.example"})", "not a url",
             "http://other.example", ""},
        Case{"ANumberWithoutAFractionIsAnInteger", R"({"hardware_id":42.0})", site,
             "http://site.example?hardware_id=42"},
        Case{"ANumberWithAFractionIsNoId", R"({"hardware_id":42.5})", site, site, ""},
        Case{"ANegativeId", R"({"hardware_id":-7})", site, "http://site.example?hardware_id=-7", "-7"},
        Case{"TheLargestId", R"({"hardware_id":9223372036854775807})", site,
             "http://site.example?hardware_id=9223372036854775807", "9223372036854775807"},
        Case{"ATooSmallNumberIsNoId", R"({"hardware_id":-9223372036854775809})", site, site, ""},
        Case{"ATooLargeNumberIsNoId", R"({"hardware_id":9223372036854775808})", site, site, ""},
        Case{"AnEmptyTextIsAnId", R"({"hardware_id":""})", site, "http://site.example?hardware_id=", ""},
        Case{"ATextOfDigitsStaysText", R"({"hardware_id":"007"})", site, "http://site.example?hardware_id=007", "007"},
        Case{"TheIdIsNotEscaped", R"({"hardware_id":"a&b=c"})", site, "http://site.example?hardware_id=a&b=c",
             "a&b=c"}),
    [](const auto& row) { return row.param.name; });

}  // namespace
