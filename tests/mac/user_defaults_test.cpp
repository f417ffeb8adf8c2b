#include "platform/user_defaults.h"

#include "tests/mac/recording_fakes.h"

using namespace recordingFakes;
namespace userDefaults = platform::userDefaults;

namespace {

using UserDefaults = MacTest;

TEST_F(UserDefaults, HaveNoTextForAKeyThatWasNeverSet) {
    mac().preferences = {{u"com.velmora.other", u"somebody else's"}};

    EXPECT_EQ(userDefaults::string("com.velmora.device_id"), std::nullopt);
}

TEST_F(UserDefaults, AreReadByTheUnchangedKey) {
    mac().preferences = {{u"com.velmora.device_id", u"ABC"}, {u"gr\u00f6\u00dfe/1.5", u"klein"}};

    EXPECT_EQ(userDefaults::string("com.velmora.device_id"), "ABC");
    EXPECT_EQ(userDefaults::string("gr\xc3\xb6\xc3\x9f\x65/1.5"), "klein");
}

TEST_F(UserDefaults, HaveNoTextForAValueThatIsNoString) {
    for (const Value& stored : {Value(std::int64_t{42}), Value(1.5), Value(true), Value(Array{})}) {
        mac().preferences = {{u"key", stored}};
        EXPECT_EQ(userDefaults::string("key"), std::nullopt) << stored.index();
    }
}

TEST_F(UserDefaults, StoreAStringBeforeTheSetReturns) {
    userDefaults::setString("com.velmora.device_id", "gr\xc3\xbc\xc3\x9f \xf0\x9f\x96\xa5");

    EXPECT_EQ(userDefaults::string("com.velmora.device_id"), "gr\xc3\xbc\xc3\x9f \xf0\x9f\x96\xa5");
    EXPECT_EQ(mac().storedPreferences, (Values{{u"com.velmora.device_id", u"gr\u00fc\u00df \U0001f5a5"}}));
}

TEST_F(UserDefaults, DistinguishAnEmptyStringFromNone) {
    userDefaults::setString("key", "");

    EXPECT_EQ(userDefaults::string("key"), "");
    EXPECT_EQ(mac().storedPreferences, (Values{{u"key", u""}}));
}

TEST_F(UserDefaults, ReplaceTheOldValue) {
    mac().preferences = {{u"key", Array{}}};

    userDefaults::setString("key", "first");
    userDefaults::setString("key", "second");

    EXPECT_EQ(mac().storedPreferences, (Values{{u"key", u"second"}}));
}

TEST_F(UserDefaults, StoreABooleanBeforeTheSetReturns) {
    userDefaults::setBool("installed", true);
    EXPECT_EQ(mac().storedPreferences, (Values{{u"installed", true}}));

    userDefaults::setBool("installed", false);
    EXPECT_EQ(mac().storedPreferences, (Values{{u"installed", false}}));
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

}  // namespace
