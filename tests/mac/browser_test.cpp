#include "platform/browser.h"

#include "tests/mac/recording_fakes.h"

using namespace recordingFakes;
using platform::openInBrowser;
using platform::Url;

namespace {

using OpenInBrowser = MacTest;

TEST_F(OpenInBrowser, PassesTheUrlUnchanged) {
    const char* const text = "HTTPS://www.Velmora.example/hardware/%2f?submission=7#top";

    EXPECT_TRUE(openInBrowser(Url::parse(text).value()));

    EXPECT_EQ(mac().calls, (std::vector<std::string>{
                               "CFURLCreateWithBytes(HTTPS://www.Velmora.example/hardware/%2f?submission=7#top)",
                               "LSOpenCFURLRef(HTTPS://www.Velmora.example/hardware/%2f?submission=7#top)",
                               "CFRelease(CFURL of CFURLCreateWithBytes)",
                           }));
}

TEST_F(OpenInBrowser, RefusesAUrlWithoutASchemeWithoutAskingTheSystem) {
    for (const char* text : {"path", "/Applications/Calculator.app", "//www.velmora.example/", "?id=7", "#top"}) {
        EXPECT_FALSE(openInBrowser(Url::parse(text).value())) << text;
    }
    EXPECT_TRUE(mac().calls.empty());
}

TEST_F(OpenInBrowser, IsFalseForAUrlThatTheSystemRejects) {
    mac().makesUrls = false;

    EXPECT_FALSE(openInBrowser(Url::parse("https://www.velmora.example/").value()));

    EXPECT_TRUE(mac().callsOf("LSOpenCFURLRef").empty());
}

TEST_F(OpenInBrowser, IsFalseWhenTheSystemOpensNothing) {
    for (const OSStatus status : {-10814, -50, 1}) {
        mac().calls.clear();
        mac().statusOfOpening = status;

        EXPECT_FALSE(openInBrowser(Url::parse("https://www.velmora.example/").value())) << status;

        EXPECT_EQ(mac().callsOf("LSOpenCFURLRef").size(), 1U);
        EXPECT_EQ(mac().callsOf("CFRelease").size(), 1U);
    }
}

}  // namespace
