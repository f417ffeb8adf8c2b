#include "platform/date.h"

#include "tests/mac/recording_fakes.h"

using namespace recordingFakes;
using platform::currentDate;

namespace {

using CurrentDate = MacTest;

TEST_F(CurrentDate, IsFormattedByThePatternInTheUsersLocale) {
    mac().now = 5000;
    mac().date = u"2567-06-01";

    EXPECT_EQ(currentDate("yyyy-MM-dd"), "2567-06-01");

    EXPECT_EQ(mac().callsOf("CFDateFormatterCreate"), std::vector<std::string>{"CFDateFormatterCreate(locale)"});
    EXPECT_EQ(mac().callsOf("CFDateFormatterCreateStringWithAbsoluteTime"),
              std::vector<std::string>{"CFDateFormatterCreateStringWithAbsoluteTime(yyyy-MM-dd, 5000)"});
}

TEST_F(CurrentDate, ReadsTheClockAtEachCall) {
    mac().date = u"2024-06-01";
    mac().now = 5000;
    static_cast<void>(currentDate("yyyy"));
    mac().now = 6000;
    static_cast<void>(currentDate("yyyy"));

    EXPECT_EQ(mac().callsOf("CFDateFormatterCreateStringWithAbsoluteTime"),
              (std::vector<std::string>{"CFDateFormatterCreateStringWithAbsoluteTime(yyyy, 5000)",
                                        "CFDateFormatterCreateStringWithAbsoluteTime(yyyy, 6000)"}));
}

TEST_F(CurrentDate, UsesTheSystemsLocaleWithoutAUsersLocale) {
    mac().hasLocale = false;
    mac().date = u"2024-06-01";

    EXPECT_EQ(currentDate("yyyy-MM-dd"), "2024-06-01");

    EXPECT_EQ(mac().callsOf("CFDateFormatterCreate"), std::vector<std::string>{"CFDateFormatterCreate(null)"});
}

TEST_F(CurrentDate, IsEmptyWithoutAFormatter) {
    mac().makesDateFormatters = false;
    mac().date = u"2024-06-01";

    EXPECT_EQ(currentDate("yyyy-MM-dd"), "");
}

TEST_F(CurrentDate, IsEmptyWhenTheFormatterGivesNoText) {
    mac().date = std::nullopt;

    EXPECT_EQ(currentDate("yyyy-MM-dd"), "");
}

TEST_F(CurrentDate, IsEmptyForAPatternThatIsNotUtf8) {
    mac().date = u"2024-06-01";

    EXPECT_EQ(currentDate("\xff"), "");
}

}  // namespace
