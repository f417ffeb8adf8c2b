#include "platform/date.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <ctime>
#include <regex>
#include <thread>
#include <vector>

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

std::string written(const std::tm& moment) {
    std::array<char, 32> text{};
    return {text.data(), std::strftime(text.data(), text.size(), "%Y-%m-%d %H", &moment)};
}

std::string shown(const std::string& settings, const std::string& pattern) {
    std::string text =
        shell("env -u LC_ALL -u LC_TIME -u LANG " + settings + " " CHILD_PATH " " + quoted(pattern)).output;
    if (!text.empty()) text.pop_back();
    return text;
}

// The day and hour as the program and as the C library have them, in the zone that the environment says now.
void expectTheLocalHour(const std::string& zone) {
    std::string before;
    std::string text;
    std::string after;
    do {
        before = written(localNow());
        text = shown("LC_ALL=C", "yyyy-MM-dd HH");
        after = written(localNow());
    } while (before != after);
    EXPECT_EQ(text, after) << "TZ=" << zone;
}

class DateOfAZone : public testing::Test {
  protected:
    ~DateOfAZone() override {
        unsetenv("TZ");
        tzset();
    }

    static void expectTheLocalHourIn(const std::string& zone) {
        setenv("TZ", zone.c_str(), 1);
        expectTheLocalHour(zone);
    }
};

TEST_F(DateOfAZone, IsTheLocalOneOnBothSidesOfMidnight) {
    // Wherever the sun stands, midnight lies between two of these.
    for (int hoursWest = -14; hoursWest <= 12; ++hoursWest) {
        expectTheLocalHourIn((hoursWest < 0 ? "Etc/GMT" : "Etc/GMT+") + std::to_string(hoursWest));
    }
}

TEST_F(DateOfAZone, KnowsPartsOfAnHourAndSummerTime) {
    for (const char* zone : {"Asia/Kolkata", "Asia/Kathmandu", "Pacific/Chatham", "Australia/Lord_Howe",
                             "America/St_Johns", "Europe/Berlin", "America/New_York", "America/Santiago"}) {
        expectTheLocalHourIn(zone);
    }
}

TEST_F(DateOfAZone, IsNamedInEachWayThatNamesAFile) {
    for (const char* zone : {":Pacific/Kiritimati", "/usr/share/zoneinfo/Pacific/Kiritimati", "UTC", "GMT", ""}) {
        expectTheLocalHourIn(zone);
    }
}

TEST_F(DateOfAZone, IsTheSystemsWithoutASetting) {
    unsetenv("TZ");
    expectTheLocalHour("(unset)");
}

// A zone spelt out in full, by tzset(3), is one too.
TEST_F(DateOfAZone, MaySpellItsRulesOut) {
    for (const char* zone : {"IST-5:30", "<+1345>-13:45", "CET-1CEST,M3.5.0,M10.5.0/3"}) expectTheLocalHourIn(zone);
}

// The Persian calendar by its cycle of 33 years, which holds from 1800 to 2256: eight leap years, and the year begins
// on the day of the equinox.
std::string persianDate(const std::tm& day) {
    constexpr std::array<const char*, 10> digits = {"۰", "۱", "۲", "۳", "۴", "۵", "۶", "۷", "۸", "۹"};
    std::tm noon{};
    noon.tm_year = day.tm_year;
    noon.tm_mon = day.tm_mon;
    noon.tm_mday = day.tm_mday;
    noon.tm_hour = 12;
    // The days since the first of the year 1375, a leap year and the 21st of a cycle: 20 March 1996.
    constexpr std::time_t secondsOfADay = 24 * 60 * 60;
    constexpr std::time_t firstOf1375 = 827'280'000 / secondsOfADay;
    std::time_t left = timegm(&noon) / secondsOfADay - firstOf1375;
    const auto isLeap = [](int year) {
        constexpr std::array<int, 8> leapYears = {1, 5, 9, 13, 17, 22, 26, 30};
        return std::count(leapYears.begin(), leapYears.end(), year % 33) > 0;
    };
    int year = 1375;
    for (; left >= (isLeap(year) ? 366 : 365); ++year) left -= isLeap(year) ? 366 : 365;
    // Six months of 31 days, then of 30.
    const int month = static_cast<int>(left < 186 ? left / 31 : 6 + (left - 186) / 30);
    const int dayOfMonth = static_cast<int>(left < 186 ? left % 31 : (left - 186) % 30);

    std::array<char, 32> latin{};
    std::snprintf(latin.data(), latin.size(), "%04d-%02d-%02d", year, month + 1, dayOfMonth + 1);
    std::string text;
    for (const char* character = latin.data(); *character != '\0'; ++character) {
        text += *character == '-' ? "-" : digits.at(static_cast<std::size_t>(*character - '0'));
    }
    return text;
}

std::tm dayOf(int year, int month, int day) {
    std::tm parts{};
    parts.tm_year = year - 1900;
    parts.tm_mon = month - 1;
    parts.tm_mday = day;
    return parts;
}

TEST(PersianDate, IsReckonedAsTheCalendarsOfIranSay) {
    EXPECT_EQ(persianDate(dayOf(1996, 3, 20)), "۱۳۷۵-۰۱-۰۱");
    EXPECT_EQ(persianDate(dayOf(2021, 3, 20)), "۱۳۹۹-۱۲-۳۰");
    EXPECT_EQ(persianDate(dayOf(2021, 3, 21)), "۱۴۰۰-۰۱-۰۱");
    EXPECT_EQ(persianDate(dayOf(2024, 6, 1)), "۱۴۰۳-۰۳-۱۲");
    EXPECT_EQ(persianDate(dayOf(2025, 3, 20)), "۱۴۰۳-۱۲-۳۰");
}

TEST(DateOfALocale, IsThePersianDayInPersianDigitsInIran) {
    setenv("TZ", "UTC", 1);
    std::string before;
    std::string text;
    std::string after;
    do {
        before = persianDate(localNow());
        text = shown("LC_ALL=fa_IR.UTF-8", "yyyy-MM-dd");
        after = persianDate(localNow());
    } while (before != after);
    EXPECT_EQ(text, after);
}

TEST(DateOfALocale, IsTheOneOfTheFirstVariableThatIsNotEmpty) {
    // Thailand counts its years from 543 years earlier than England.
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
        const int year = std::stoi(shown(variables + " TZ=UTC", "yyyy"));
        EXPECT_EQ(year > 2500, settings.isThai) << variables << ": " << year;
    }
}

TEST(DateOfALocale, MayNameTheCalendarItself) {
    EXPECT_GT(std::stoi(shown("LC_ALL=en_US.UTF-8@calendar=buddhist", "yyyy")), 2500);
    EXPECT_LT(std::stoi(shown("LC_ALL=th_TH.UTF-8@calendar=gregorian", "yyyy")), 2500);
}

TEST(Date, IsWrittenByManyThreadsAtOnce) {
    std::vector<std::string> dates(8);
    std::vector<std::thread> threads;
    for (std::string& date : dates) {
        threads.emplace_back([&date] {
            for (int call = 0; call < 20; ++call) date = platform::currentDate("'on' yyyy-MM-dd");
        });
    }
    for (std::thread& thread : threads) thread.join();
    const std::regex form("on [0-9]{4}-[0-9]{2}-[0-9]{2}");
    for (const std::string& date : dates) EXPECT_TRUE(std::regex_match(date, form)) << date;
}

}  // namespace
