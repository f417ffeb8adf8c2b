#include "platform/user_defaults.h"

#include <locale>

#include "tests/mac/recording_fakes.h"

using namespace recordingFakes;
namespace userDefaults = platform::userDefaults;

namespace {

using UserDefaults = MacTest;

class CommaAsDecimalPoint : public std::numpunct<char> {
  protected:
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

class GlobalLocale {
  public:
    explicit GlobalLocale(const std::locale& locale) : previous_(std::locale::global(locale)) {}
    GlobalLocale(const GlobalLocale&) = delete;
    GlobalLocale& operator=(const GlobalLocale&) = delete;
    ~GlobalLocale() { std::locale::global(previous_); }

  private:
    std::locale previous_;
};

TEST_F(UserDefaults, HaveNoTextForAKeyThatWasNeverSet) {
    mac().preferences = {{u"com.velmora.other", u"somebody else's"}};

    EXPECT_EQ(userDefaults::string("com.velmora.device_id"), std::nullopt);
}

TEST_F(UserDefaults, AreAskedForTheKeyAsItIsWritten) {
    mac().preferences = {{u"com.velmora.device_id", u"ABC"}, {u"gr\u00f6\u00dfe/1.5", u"klein"}};

    EXPECT_EQ(userDefaults::string("com.velmora.device_id"), "ABC");
    EXPECT_EQ(userDefaults::string("gr\xc3\xb6\xc3\x9f\x65/1.5"), "klein");
}

TEST_F(UserDefaults, GiveTheTextFormOfWhatIsStored) {
    struct Case {
        const char* description;
        Value stored;
        std::optional<std::string> text;
    };
    const std::vector<Case> cases = {
        {"a string", u"1D3F5B79-8C0E-5A24-B6D1-4E7F90A2C3B8", "1D3F5B79-8C0E-5A24-B6D1-4E7F90A2C3B8"},
        {"the empty string", u"", ""},
        {"not ASCII", u"\u00fc\U0001f5a5", "\xc3\xbc\xf0\x9f\x96\xa5"},
        {"a NUL inside", std::u16string(u"a\0b", 3), std::string("a\0b", 3)},
        {"a number as a string", u"042", "042"},
        {"an integer", std::int64_t{42}, "42"},
        {"a negative integer", std::int64_t{-7}, "-7"},
        {"zero", std::int64_t{0}, "0"},
        {"the greatest integer of 64 bits", std::int64_t{9223372036854775807}, "9223372036854775807"},
        {"one beyond", HugeInteger{9223372036854775808.0}, "9.223372036854776e+18"},
        {"a real number", 1.5, "1.5"},
        {"a real number without a binary form", 0.1, "0.1"},
        {"a real number that is whole", 2.0, "2"},
        {"a whole real number of more than 16 digits", 1e17, "1e+17"},
        {"a great real number", 1e300, "1e+300"},
        {"true", true, "1"},
        {"false", false, "0"},
        {"a list", Array{}, std::nullopt},
    };
    for (const Case& given : cases) {
        mac().preferences = {{u"key", given.stored}};
        EXPECT_EQ(userDefaults::string("key"), given.text) << given.description;
    }
}

TEST_F(UserDefaults, WriteNumbersWithoutTheLocalesPunctuation) {
    const GlobalLocale german(std::locale(std::locale::classic(), new CommaAsDecimalPoint));
    mac().preferences = {{u"real", 1.5}, {u"integer", std::int64_t{1234567}}};

    EXPECT_EQ(userDefaults::string("real"), "1.5");
    EXPECT_EQ(userDefaults::string("integer"), "1234567");
}

TEST_F(UserDefaults, HaveAStringStoredWhenTheSetReturns) {
    userDefaults::setString("com.velmora.device_id", "gr\xc3\xbc\xc3\x9f \xf0\x9f\x96\xa5");

    EXPECT_EQ(userDefaults::string("com.velmora.device_id"), "gr\xc3\xbc\xc3\x9f \xf0\x9f\x96\xa5");
    EXPECT_EQ(mac().storedPreferences, (Values{{u"com.velmora.device_id", u"gr\u00fc\u00df \U0001f5a5"}}));
}

TEST_F(UserDefaults, KeepAnEmptyStringApartFromNone) {
    userDefaults::setString("key", "");

    EXPECT_EQ(userDefaults::string("key"), "");
    EXPECT_EQ(mac().storedPreferences, (Values{{u"key", u""}}));
}

TEST_F(UserDefaults, ReplaceWhatWasThere) {
    mac().preferences = {{u"key", Array{}}};

    userDefaults::setString("key", "first");
    userDefaults::setString("key", "second");

    EXPECT_EQ(mac().storedPreferences, (Values{{u"key", u"second"}}));
}

TEST_F(UserDefaults, HaveABooleanStoredAsSuchWhenTheSetReturns) {
    userDefaults::setBool("installed", true);
    userDefaults::setBool("updated", false);

    EXPECT_EQ(mac().storedPreferences, (Values{{u"installed", true}, {u"updated", false}}));
    EXPECT_EQ(userDefaults::string("installed"), "1");
    EXPECT_EQ(userDefaults::string("updated"), "0");
}

TEST_F(UserDefaults, SynchronizeAfterEachSet) {
    userDefaults::setString("key", "value");
    userDefaults::setBool("flag", true);

    EXPECT_EQ(mac().callsOf("CFPreferencesSetAppValue"),
              (std::vector<std::string>{"CFPreferencesSetAppValue(key)", "CFPreferencesSetAppValue(flag)"}));
    EXPECT_EQ(mac().callsOf("CFPreferencesAppSynchronize").size(), 2U);
}

TEST_F(UserDefaults, LeaveAKeyAloneWhenTheNewTextIsNotUtf8) {
    mac().preferences = {{u"key", u"kept"}};

    userDefaults::setString("key", "\xff");

    EXPECT_EQ(mac().preferences, (Values{{u"key", u"kept"}}));
}

TEST_F(UserDefaults, KnowNoKeyThatIsNotUtf8) {
    userDefaults::setString("\xff", "value");
    userDefaults::setBool("\xff", true);

    EXPECT_EQ(userDefaults::string("\xff"), std::nullopt);
    EXPECT_EQ(mac().preferences, Values{});
}

TEST_F(UserDefaults, StoreTheFirstText) {
    EXPECT_EQ(userDefaults::setStringIfAbsent("key", "first"), "first");

    EXPECT_EQ(mac().storedPreferences, (Values{{u"key", u"first"}}));
}

TEST_F(UserDefaults, KeepTheTextThatIsThere) {
    for (const std::u16string& present : {std::u16string(u"present"), std::u16string()}) {
        mac().preferences = {{u"key", present}};

        EXPECT_EQ(userDefaults::setStringIfAbsent("key", "late"), present.empty() ? "" : "present");

        EXPECT_EQ(mac().storedPreferences, (Values{{u"key", present}}));
        EXPECT_TRUE(mac().callsOf("CFPreferencesSetAppValue").empty());
    }
}

TEST_F(UserDefaults, ReplaceWhatIsNoTextByTheFirstText) {
    mac().preferences = {{u"key", Array{}}};

    EXPECT_EQ(userDefaults::setStringIfAbsent("key", "first"), "first");

    EXPECT_EQ(mac().storedPreferences, (Values{{u"key", u"first"}}));
}

TEST_F(UserDefaults, KeepTheTextThatAnotherProcessHasStoredMeanwhile) {
    mac().fromOtherProcesses = {{{u"key", u"theirs"}}};

    EXPECT_EQ(userDefaults::setStringIfAbsent("key", "ours"), "theirs");

    EXPECT_EQ(mac().storedPreferences, (Values{{u"key", u"theirs"}}));
}

TEST_F(UserDefaults, GiveTheTextThatStandsWhenAnotherProcessSetsItsOwnAtTheSameMoment) {
    mac().fromOtherProcesses = {{}, {{u"key", u"theirs"}}};

    EXPECT_EQ(userDefaults::setStringIfAbsent("key", "ours"), "theirs");
}

TEST_F(UserDefaults, GiveBackAFirstTextThatCannotBeStored) {
    EXPECT_EQ(userDefaults::setStringIfAbsent("key", "\xff"), "\xff");

    EXPECT_EQ(mac().preferences, Values{});
}

}  // namespace
