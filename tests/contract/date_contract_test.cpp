#include "platform/date.h"

#include <gtest/gtest.h>

#include <ctime>

#include "tests/support/shell.h"

namespace {

using testSupport::shell;

// The date as a process of these settings has it, and what it has to be by the C library's clock. Asked until no
// midnight lies between the two.
struct Dates {
    std::string shown;
    std::tm today{};
};

Dates datesWith(const std::string& settings, const std::string& zone) {
    const auto today = [&zone] {
        const std::string day = shell("TZ=" + zone + " date +%Y-%m-%d").output;
        std::tm parts{};
        strptime(day.c_str(), "%Y-%m-%d", &parts);
        return parts;
    };
    for (;;) {
        const std::tm before = today();
        const std::string shown =
            shell("env -u LC_ALL -u LC_TIME -u LANG " + settings + " TZ=" + zone + " " CHILD_PATH " yyyy-MM-dd").output;
        const std::tm after = today();
        if (before.tm_yday == after.tm_yday) return {shown.substr(0, shown.size() - 1), after};
    }
}

std::string written(int year, const std::tm& day) {
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%04d-%02d-%02d", year, day.tm_mon + 1, day.tm_mday);
    return text.data();
}

std::string inDigits(const std::string& text, const std::array<const char*, 10>& digits) {
    std::string result;
    for (const char character : text) {
        result += character == '-' ? "-" : digits.at(static_cast<std::size_t>(character - '0'));
    }
    return result;
}

constexpr std::array<const char*, 10> arabic = {"٠", "١", "٢", "٣", "٤", "٥", "٦", "٧", "٨", "٩"};

struct Locale {
    const char* name;
    const char* settings;
};

std::string nameOf(const testing::TestParamInfo<Locale>& info) { return info.param.name; }

class GregorianDate : public testing::TestWithParam<Locale> {};

TEST_P(GregorianDate, IsTheLocalDayInLatinDigits) {
    const Dates dates = datesWith(GetParam().settings, "UTC");
    EXPECT_EQ(dates.shown, written(dates.today.tm_year + 1900, dates.today));
}

INSTANTIATE_TEST_SUITE_P(Date, GregorianDate,
                         testing::Values(Locale{"WithoutAnySetting", ""}, Locale{"C", "LC_ALL=C"},
                                         Locale{"CInUtf8", "LC_ALL=C.UTF-8"}, Locale{"English", "LANG=en_US.UTF-8"},
                                         Locale{"Japanese", "LC_TIME=ja_JP.UTF-8"},
                                         Locale{"ArabicOfTheEmirates", "LC_ALL=ar_AE.UTF-8"},
                                         Locale{"Nonsense", "LC_ALL=xx_YY"},
                                         Locale{"EmptyAllThenEnglish", "LC_ALL= LANG=en_GB.UTF-8"},
                                         Locale{"DatesBeforeLanguage", "LC_TIME=en_US.UTF-8 LANG=th_TH.UTF-8"}),
                         nameOf);

class BuddhistDate : public testing::TestWithParam<Locale> {};

TEST_P(BuddhistDate, Is543YearsAhead) {
    const Dates dates = datesWith(GetParam().settings, "UTC");
    EXPECT_EQ(dates.shown, written(dates.today.tm_year + 1900 + 543, dates.today));
}

INSTANTIATE_TEST_SUITE_P(Date, BuddhistDate,
                         testing::Values(Locale{"ByAll", "LC_ALL=th_TH.UTF-8"},
                                         Locale{"ByTime", "LC_TIME=th_TH.UTF-8 LANG=en_US.UTF-8"},
                                         Locale{"ByLanguage", "LANG=th_TH.UTF-8"},
                                         Locale{"ByRegionAlone", "LC_ALL=en_TH.UTF-8"},
                                         Locale{"AllBeforeTime", "LC_ALL=th_TH.UTF-8 LC_TIME=en_US.UTF-8"},
                                         Locale{"NotByMessages", "LC_ALL= LC_MESSAGES=en_US.UTF-8 LANG=th_TH.UTF-8"}),
                         nameOf);

TEST(Date, HasArabicDigitsInEgypt) {
    const Dates dates = datesWith("LC_ALL=ar_EG.UTF-8", "UTC");
    EXPECT_EQ(dates.shown, inDigits(written(dates.today.tm_year + 1900, dates.today), arabic));
}

TEST(Date, IsThePersianYearInIran) {
    const Dates dates = datesWith("LC_ALL=en_IR.UTF-8", "UTC");
    const int year = std::stoi(dates.shown.substr(0, 4));
    EXPECT_TRUE(year == dates.today.tm_year + 1900 - 621 || year == dates.today.tm_year + 1900 - 622) << dates.shown;
}

TEST(Date, IsTheDayOfTheUsersTimeZone) {
    const Dates east = datesWith("LC_ALL=C", "Pacific/Kiritimati");  // 14 hours ahead of UTC
    const Dates west = datesWith("LC_ALL=C", "Pacific/Pago_Pago");   // 11 hours behind: always another day
    EXPECT_EQ(east.shown, written(east.today.tm_year + 1900, east.today));
    EXPECT_EQ(west.shown, written(west.today.tm_year + 1900, west.today));
    EXPECT_NE(east.shown, west.shown);
}

TEST(Date, FollowsThePattern) {
    EXPECT_EQ(shell("LC_ALL=C TZ=UTC " CHILD_PATH " \"'a'yyyy'b'\"").output.size(), 7U);
    EXPECT_EQ(shell("LC_ALL=C " CHILD_PATH " ''").output, "\n");
}

TEST(Date, ReadsTheClockAtEachCall) {
    const std::string first = platform::currentDate("A");  // Milliseconds of the day.
    std::string next = first;
    while (next == first) next = platform::currentDate("A");
    EXPECT_NE(next, first);
}

}  // namespace
