#include "platform/mac/core_foundation.h"

#include <utility>

#include "tests/mac/recording_fakes.h"

using namespace recordingFakes;
using namespace platform::coreFoundation;

namespace {

using CoreFoundation = MacTest;

Owned<CFStringRef> stringOf(const std::u16string& text) {
    return Owned<CFStringRef>(static_cast<CFStringRef>(makeObject(text, "the test")));
}

TEST_F(CoreFoundation, ReleasesAnOwnedObjectWhenItsOwnerGoes) {
    { const Owned<CFStringRef> owned = stringOf(u"text"); }

    EXPECT_EQ(mac().callsOf("CFRelease"), std::vector<std::string>{"CFRelease(CFString of the test)"});
}

TEST_F(CoreFoundation, ReleasesAnObjectThatChangedItsOwnerOnce) {
    Owned<CFStringRef> first = stringOf(u"text");
    Owned<CFStringRef> second = std::move(first);
    const Owned<CFTypeRef> third(second.release());

    EXPECT_TRUE(mac().callsOf("CFRelease").empty());
}

TEST_F(CoreFoundation, LeavesNullAlone) {
    { const Owned<CFTypeRef> owned; }

    EXPECT_TRUE(mac().callsOf("CFRelease").empty());
}

TEST_F(CoreFoundation, DistinguishesStringsFromOtherObjects) {
    const Owned<CFTypeRef> number(makeObject(std::int64_t{7}, "the test"));

    EXPECT_TRUE(isString(stringOf(u"7").get()));
    EXPECT_FALSE(isString(number.get()));
    EXPECT_FALSE(isString(nullptr));
}

TEST_F(CoreFoundation, ReadsAndMakesStringsOfAnyTextInUtf8) {
    struct Case {
        std::u16string utf16;
        std::string utf8;
    };
    const std::vector<Case> cases = {
        {u"", ""},
        {u"text", "text"},
        {std::u16string(u"a\0b\0", 4), std::string("a\0b\0", 4)},
        {u"\u007f\u0080\u07ff\u0800\ud7ff\ue000\uffff",
         "\x7f\xc2\x80\xdf\xbf\xe0\xa0\x80\xed\x9f\xbf\xee\x80\x80\xef\xbf\xbf"},
        {u"\U00010000\U0010ffff", "\xf0\x90\x80\x80\xf4\x8f\xbf\xbf"},
        {u"\ufeffmarked", "\xef\xbb\xbfmarked"},
    };
    for (const Case& text : cases) {
        EXPECT_EQ(utf8(stringOf(text.utf16).get()), text.utf8);
        EXPECT_EQ(utf8(cfString(text.utf8).get()), text.utf8);
    }
}

TEST_F(CoreFoundation, ReadsHalfASurrogatePairAsAQuestionMark) {
    EXPECT_EQ(utf8(stringOf({u'a', 0xD83D, u'b'}).get()), "a?b");
    EXPECT_EQ(utf8(stringOf({u'a', 0xDDA5}).get()), "a?");
}

TEST_F(CoreFoundation, MakesNoStringFromInvalidUtf8) {
    for (const std::string text : {"\xff", "a\xc3", "\xc0\x80", "\xed\xa0\x80", "\xf4\x90\x80\x80"}) {
        EXPECT_EQ(cfString(text), nullptr);
    }
}

}  // namespace
