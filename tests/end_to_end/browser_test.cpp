// Opens the results page in a real browser by the desktop's own opener.
#include <filesystem>
#include <fstream>

#include "tests/end_to_end/rig/fifo.h"
#include "tests/end_to_end/surroundings.h"

namespace end_to_end {
namespace {

namespace fs = std::filesystem;

// Prints the rendered page and ends. It runs as root too, and looks up no host names.
constexpr const char* browserCommand =
    "/usr/bin/chromium --headless=new --dump-dom --no-sandbox --disable-gpu --disable-quic "
    "--disable-background-networking --disable-component-update --disable-sync --no-first-run "
    "'--host-resolver-rules=MAP * ~NOTFOUND, EXCLUDE 127.0.0.1'";

class Browser : public Surroundings {
  protected:
    void SetUp() override {
        for (const char* const program : {"/usr/bin/xdg-open", "/usr/bin/chromium"}) {
            if (!fs::exists(program)) GTEST_SKIP() << program << " is missing. scripts/check-browser installs it.";
        }
        Surroundings::SetUp();
        chooseBrowser();
    }

    // Makes it the desktop's default browser.
    void chooseBrowser() const {
        const fs::path script = folder_.path() / "browser";
        std::ofstream(script) << "#!/bin/sh\nexec " << browserCommand
                              << " '--user-data-dir=" << (folder_.path() / "profile").string()
                              << "' '--screenshot=" BROWSER_PICTURE "' \"$@\" > '" << page_.path().string() << "'\n";
        fs::permissions(script, fs::perms::owner_all);
        const fs::path applications = home_.path() / ".local/share/applications";
        fs::create_directories(applications);
        std::ofstream(applications / "chosen-browser.desktop")
            << "[Desktop Entry]\nType=Application\nName=Browser\nExec=" << script.string() << " %u\n";
        fs::create_directories(home_.path() / ".config");
        std::ofstream(home_.path() / ".config/mimeapps.list")
            << "[Default Applications]\nx-scheme-handler/http=chosen-browser.desktop\n";
    }

    testSupport::TemporaryFolder folder_;
    Fifo page_{folder_.path() / "page"};
};

TEST_F(Browser, ShowsTheSubmittedHardware) {
    Program website(
        {.path = WEBSITE_STAND_IN_PROGRAM, .environment = {}, .arguments = {std::to_string(websitePort())}});
    ASSERT_TRUE(website.waitForLine("Listening on " + base())) << website.bytes(Stream::error);
    Program::Setting withRealOpener = setting();
    withRealOpener.environment["PATH"] = "/usr/bin:/bin";
    Program program(withRealOpener);
    const AccessibleProgram window(program.pid());

    ASSERT_TRUE(press(window, "Detect Hardware"));
    ASSERT_TRUE(press(window, "Send to Website"));
    EXPECT_TRUE(website.waitForLine("GET /detected-hardware/?hardware_id=1 200"));
    EXPECT_EQ(program.waitForExit(), success);
    EXPECT_TRUE(program.waitForLine("✅ Opened URL: " + base() + "/detected-hardware/?hardware_id=1"));

    ASSERT_TRUE(page_.waitUntil([](const std::string& text) { return text.find("</html>") != std::string::npos; }));
    for (const char* const value : {"Apple M1 Pro Max", "Apple M1 GPU", "16 GB", "494 GB"}) {
        EXPECT_NE(page_.bytes().find(std::string("<td>") + value + "</td>"), std::string::npos) << page_.bytes();
    }
}

}  // namespace
}  // namespace end_to_end
