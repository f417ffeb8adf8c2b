// Redirects by which a website could try to open something else than a page.
#include <gtest/gtest.h>

#include "submit/page_to_open.h"

namespace {

const std::string site = "http://site.example";

class HostileRedirect : public testing::TestWithParam<const char*> {};

// The page is on the address typed, or is that address itself.
TEST_P(HostileRedirect, OpensAPageOfTheWebsiteTyped) {
    platform::JsonObject answer;
    answer.add("redirect_url", std::string(GetParam()));
    answer.add("hardware_id", std::string("42"));
    const PageToOpen choice = pageToOpen(answer, site);

    ASSERT_TRUE(choice.page.has_value());
    const std::string& page = choice.page->absoluteString();
    EXPECT_EQ(choice.page->scheme(), "http") << page;
    EXPECT_EQ(choice.page->host(), "site.example") << page;
    EXPECT_TRUE(page == site || page.rfind(site + "/", 0) == 0) << page;
}

INSTANTIATE_TEST_SUITE_P(Values, HostileRedirect,
                         testing::Values("file:///etc/passwd", "FILE:///etc/passwd", "/../../etc/passwd",
                                         "javascript:alert(1)", "data:text/html,<script>alert(1)</script>", "vscript:x",
                                         "smb://host/share", "ssh://-oProxyCommand=x", "mailto:a@b.example", "tel:+1",
                                         "x-apple.systempreferences:", "ms-settings:", "steam://run/1",
                                         "//elsewhere.example/", "\\\\elsewhere.example\\share", "@elsewhere.example/",
                                         ".elsewhere.example/", ":80@elsewhere.example/", " http://elsewhere.example",
                                         "\thttp://elsewhere.example", "HTTP://elsewhere.example",
                                         "http:/elsewhere.example", "https:elsewhere.example", "-rf", "--help",
                                         "; rm -rf ~", "$(reboot)", "`reboot`", "|reboot", "a\nb", "\r\nLocation: x",
                                         "\x1b[2J", "%00", "%"));

}  // namespace
