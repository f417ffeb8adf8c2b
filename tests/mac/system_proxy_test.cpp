#include "platform/curl/system_proxy.h"

#include "tests/mac/recording_fakes.h"

using namespace recordingFakes;

namespace {

using SystemProxy = MacTest;

std::string proxy() { return platform::systemProxyFor(platform::Url::parse("https://www.velmora.example/a").value()); }

Values named(const std::u16string& type, const std::u16string& host, std::int64_t port) {
    return {{u"type", type}, {u"host", host}, {u"port", port}};
}

const Values none = {{u"type", u"none"}};

TEST_F(SystemProxy, IsTheFirstProxyInTheSettingsForTheUrl) {
    mac().proxies = {named(u"HTTPS", u"proxy.example", 8080), named(u"HTTP", u"second.example", 80), none};

    EXPECT_EQ(proxy(), "http://proxy.example:8080");

    EXPECT_EQ(mac().callsOf("CFNetworkCopyProxiesForURL"),
              std::vector<std::string>{"CFNetworkCopyProxiesForURL(https://www.velmora.example/a)"});
}

TEST_F(SystemProxy, IsFormattedForLibcurl) {
    const std::vector<std::pair<Values, std::string>> cases = {
        {named(u"HTTP", u"proxy.example", 1), "http://proxy.example:1"},
        {named(u"HTTPS", u"10.0.0.1", 65535), "http://10.0.0.1:65535"},
        {named(u"HTTP", u"2001:db8::1", 3128), "http://[2001:db8::1]:3128"},
        {named(u"SOCKS", u"proxy.example", 1080), "socks5h://proxy.example:1080"},
        {none, ""},
    };
    for (const auto& [setting, address] : cases) {
        mac().proxies = {setting};
        EXPECT_EQ(proxy(), address);
    }
}

TEST_F(SystemProxy, SkipsUnusableProxies) {
    const Values http = named(u"HTTP", u"proxy.example", 8080);
    for (const Values& unusable : {named(u"unknown", u"other.example", 1),
                                   Values(),
                                   Values{{u"type", u"HTTP"}},
                                   {{u"type", u"HTTP"}, {u"host", u"h"}},
                                   {{u"type", u"HTTP"}, {u"host", std::int64_t{1}}, {u"port", std::int64_t{80}}}}) {
        mac().proxies = {unusable, http};
        EXPECT_EQ(proxy(), "http://proxy.example:8080");
        mac().proxies = {unusable};
        EXPECT_EQ(proxy(), "");
    }
}

TEST_F(SystemProxy, IsNoneIfTheSystemNamesNone) {
    EXPECT_EQ(proxy(), "");
    mac().proxies = {none, named(u"HTTP", u"proxy.example", 8080)};
    EXPECT_EQ(proxy(), "");
    mac().proxies = {named(u"HTTP", u"proxy.example", 8080)};
    for (bool Mac::*works : {&Mac::listsProxies, &Mac::hasProxySettings, &Mac::makesUrls}) {
        mac().*works = false;
        EXPECT_EQ(proxy(), "");
        mac().*works = true;
    }
}

}  // namespace
