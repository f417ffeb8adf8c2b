#include "platform/url.h"

#include <gtest/gtest.h>

namespace {

using platform::Url;

void expectKept(const std::string& text) {
    const auto url = Url::parse(text);
    ASSERT_TRUE(url) << text;
    EXPECT_EQ(url->absoluteString(), text);
}

TEST(Url, KeepsAUrlWithASchemeByteForByte) {
    for (const char* text : {"http://h", "http://h/", "HTTP://HOST/P", "http://h/%2F%2f/../.", "http://h?q",
                             "http://h/?", "http://h/#f", "http://h//a//", "http://", "http:///x", "http:x",
                             "localhost:8080/x", "http://h/@:x", "http://h/a'b(c)*!$&+,;=:@", "foo:bar"}) {
        expectKept(text);
    }
}

TEST(Url, KeepsEveryKindOfHostUserAndPort) {
    for (const char* text :
         {"http://h:", "http://h:99999/", "http://h:080/", "http://u:p@h/", "http://u:p:q@h/", "http://[::1]:80/",
          "http://127.1/", "http://10.0.0.1.site.example/p", "http://1.2.3.4.5:80/", "http://%41/"}) {
        expectKept(text);
    }
}

TEST(Url, KeepsAReferenceWithoutAScheme) {
    for (const char* text : {"//h/p", "/path/", "path", "?q", "#f", ".."}) expectKept(text);
}

TEST(Url, RefusesACharacterThatMustBeEscapedAndABadEscape) {
    for (const char character : std::string("\t\n <>\"\\^`{|}\x7F\xE9")) {
        EXPECT_FALSE(Url::parse(std::string("http://h/") + character)) << character;
    }
    for (const char* text : {" http://h", "http://h/\xC3\xA9", "http://\xC3\xA9.example", "http://h/%", "http://h/%4",
                             "http://h/%zz", "http://h/?[x]", "http://h/[x]"}) {
        EXPECT_FALSE(Url::parse(text)) << text;
    }
}

TEST(Url, RefusesWhatBreaksTheGrammar) {
    for (const char* text :
         {"", "1http://h", "h_t://x", "127.0.0.1:80", "http://h/#a#b", "http://h:abc", "http://h:80a/",
          "http://h:80:90", "//h:-1", "http://u@h@i/", "http://u@@h/", "http://[::1]x/", "http://[::1]80/",
          "http://[fe80::1%25en0]/", "http://[::1]@h/", "http://[::1]:80@h/", "//[::1]x@h", "http://[::1"}) {
        EXPECT_FALSE(Url::parse(text)) << text;
    }
}

TEST(Url, RefusesANulCharacter) { EXPECT_FALSE(Url::parse(std::string("http://h/\0x", 11))); }

TEST(Url, TakesAPathOfAHundredThousandCharacters) { EXPECT_TRUE(Url::parse("http://h/" + std::string(100000, 'a'))); }

TEST(Url, GivesTheSchemeInLowerCaseAndTheHostUnchanged) {
    EXPECT_EQ(Url::parse("HTTP://Host:1/p")->scheme(), "http");
    EXPECT_EQ(Url::parse("AZ+.-09az:x")->scheme(), "az+.-09az");
    EXPECT_EQ(Url::parse("HTTP://Host:1/p")->host(), "Host");
    EXPECT_EQ(Url::parse("localhost:8080")->scheme(), "localhost");
    EXPECT_EQ(Url::parse("/save-detected-hardware/")->scheme(), "");
    EXPECT_EQ(Url::parse("http:///x")->host(), "");
    EXPECT_EQ(Url::parse("http://:80/")->host(), "");
    EXPECT_EQ(Url::parse("http://u:p@h:80/x@y:z")->host(), "h");
    EXPECT_EQ(Url::parse("https://[::1]:443/")->host(), "[::1]");
    EXPECT_EQ(Url::parse("http://10.0.0.1.site.example/p")->host(), "10.0.0.1.site.example");
    EXPECT_EQ(Url::parse("http:/x//h")->host(), "");
    EXPECT_EQ(Url::parse("//h?q@r")->host(), "h");
}

}  // namespace
