#include "platform/date.h"

#include <gtest/gtest.h>

#include <array>
#include <ctime>

#include "tests/support/shell.h"

namespace {

using testSupport::quoted;
using testSupport::shell;

std::tm localNow() {
    tzset();
    const std::time_t now = std::time(nullptr);
    std::tm parts{};
    localtime_r(&now, &parts);
    return parts;
}

std::string written(const std::tm& moment, const char* format) {
    std::array<char, 32> text{};
    return {text.data(), std::strftime(text.data(), text.size(), format, &moment)};
}

std::string shown(const std::string& settings, const std::string& pattern) {
    std::string text =
        shell("env -u LC_ALL -u LC_TIME -u LANG " + settings + " " CHILD_PATH " " + quoted(pattern)).output;
    if (!text.empty()) text.pop_back();
    return text;
}

// The date as a process with these settings prints it, and the same moment by the C library. Repeated if the hour
// changes in between.
struct Shown {
    std::string text;
    std::tm now{};
};

Shown shownAt(const std::string& settings, const std::string& pattern) {
    for (;;) {
        const std::tm before = localNow();
        const std::string text = shown(settings, pattern);
        const std::tm after = localNow();
        if (before.tm_yday == after.tm_yday && before.tm_hour == after.tm_hour) return {text, after};
    }
}

std::string inDigits(const std::string& text, const std::array<const char*, 10>& digits) {
    std::string result;
    for (const char character : text) {
        result += character == '-' ? "-" : digits.at(static_cast<std::size_t>(character - '0'));
    }
    return result;
}

constexpr std::array<const char*, 10> arabic = {"٠", "١", "٢", "٣", "٤", "٥", "٦", "٧", "٨", "٩"};
constexpr std::array<const char*, 10> persian = {"۰", "۱", "۲", "۳", "۴", "۵", "۶", "۷", "۸", "۹"};

TEST(DateOfALocale, IsTheGregorianDayInLatinDigitsAlmostEverywhere) {
    for (const char* settings : {"", "LC_ALL=C", "LC_ALL=C.UTF-8", "LANG=en_US.UTF-8", "LC_TIME=ja_JP.UTF-8",
                                 "LC_ALL=ar_AE.UTF-8", "LC_ALL=xx_YY"}) {
        const Shown date = shownAt(settings, "yyyy-MM-dd");
        EXPECT_EQ(date.text, written(date.now, "%Y-%m-%d")) << settings;
    }
}

TEST(DateOfALocale, Is543YearsAheadInThailand) {
    for (const char* settings : {"LC_ALL=th_TH.UTF-8", "LC_ALL=en_TH.UTF-8"}) {
        Shown date = shownAt(settings, "yyyy-MM-dd");
        date.now.tm_year += 543;
        EXPECT_EQ(date.text, written(date.now, "%Y-%m-%d")) << settings;
    }
}

TEST(DateOfALocale, HasArabicDigitsInEgypt) {
    const Shown date = shownAt("LC_ALL=ar_EG.UTF-8", "yyyy-MM-dd");
    EXPECT_EQ(date.text, inDigits(written(date.now, "%Y-%m-%d"), arabic));
}

TEST(DateOfALocale, IsThePersianYearInPersianDigitsInIran) {
    const Shown year = shownAt("LC_ALL=fa_IR.UTF-8", "yyyy");
    const int gregorian = year.now.tm_year + 1900;
    EXPECT_TRUE(year.text == inDigits(std::to_string(gregorian - 621), persian) ||
                year.text == inDigits(std::to_string(gregorian - 622), persian))
        << year.text;
}

TEST(DateOfALocale, UsesTheFirstLocaleVariableThatIsNotEmpty) {
    // The year in Thailand is 543 ahead of the year in England.
    constexpr const char* thai = "th_TH.UTF-8";
    constexpr const char* english = "en_GB.UTF-8";
    struct Settings {
        const char* all;
        const char* time;
        const char* language;
        bool isThai;
    };
    for (const Settings& settings : {
             Settings{thai, english, english, true},
             Settings{english, thai, thai, false},
             Settings{"", thai, english, true},
             Settings{"", english, thai, false},
             Settings{"", "", thai, true},
             Settings{"", "", english, false},
             Settings{"", "", "", false},
         }) {
        const std::string variables = std::string("LC_ALL=") + settings.all + " LC_TIME=" + settings.time +
                                      " LANG=" + settings.language + " LANGUAGE=th LC_MESSAGES=" + thai;
        const int year = std::stoi(shown(variables, "yyyy"));
        EXPECT_EQ(year > 2500, settings.isThai) << variables << ": " << year;
    }
}

TEST(DateOfALocale, UsesTheCalendarThatTheLocaleNames) {
    EXPECT_GT(std::stoi(shown("LC_ALL=en_US.UTF-8@calendar=buddhist", "yyyy")), 2500);
    EXPECT_LT(std::stoi(shown("LC_ALL=th_TH.UTF-8@calendar=gregorian", "yyyy")), 2500);
}

class DateOfAZone : public testing::Test {
  protected:
    ~DateOfAZone() override {
        unsetenv("TZ");
        tzset();
    }

    static void expectTheLocalHourIn(const std::string& zone) {
        setenv("TZ", zone.c_str(), 1);
        const Shown hour = shownAt("LC_ALL=C", "yyyy-MM-dd HH");
        EXPECT_EQ(hour.text, written(hour.now, "%Y-%m-%d %H")) << "TZ=" << zone;
    }
};

TEST_F(DateOfAZone, IsTheLocalDayOnBothSidesOfMidnight) {
    // At any time it is before midnight in some of these zones and after it in others.
    for (int hoursWest = -14; hoursWest <= 12; ++hoursWest) {
        expectTheLocalHourIn((hoursWest < 0 ? "Etc/GMT" : "Etc/GMT+") + std::to_string(hoursWest));
    }
}

TEST_F(DateOfAZone, SupportsFractionalOffsetsAndSummerTime) {
    for (const char* zone : {"Asia/Kolkata", "Asia/Kathmandu", "Pacific/Chatham", "Australia/Lord_Howe",
                             "America/St_Johns", "Europe/Berlin", "America/New_York", "America/Santiago"}) {
        expectTheLocalHourIn(zone);
    }
}

TEST_F(DateOfAZone, AcceptsAFileOrRulesOrNone) {
    for (const char* zone : {":Pacific/Kiritimati", "/usr/share/zoneinfo/Pacific/Kiritimati", "UTC", "GMT", "",
                             "IST-5:30", "<+1345>-13:45", "CET-1CEST,M3.5.0,M10.5.0/3"}) {
        expectTheLocalHourIn(zone);
    }
    unsetenv("TZ");
    const Shown hour = shownAt("LC_ALL=C", "yyyy-MM-dd HH");
    EXPECT_EQ(hour.text, written(hour.now, "%Y-%m-%d %H")) << "no zone";
}

TEST(Date, FollowsThePattern) {
    EXPECT_EQ(shown("LC_ALL=C", "'a'yyyy'b'").size(), 6U);
    EXPECT_EQ(shown("LC_ALL=C", ""), "");
}

TEST(Date, ReadsTheClockAtEachCall) {
    const std::string first = platform::currentDate("A");  // Milliseconds of the day.
    std::string next = first;
    while (next == first) next = platform::currentDate("A");
    EXPECT_NE(next, first);
}

}  // namespace
