// The program on a Wayland desktop.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <future>

#include "tests/end_to_end/rig/screenshot.h"
#include "tests/end_to_end/rig/wayland_desktop.h"
#include "tests/end_to_end/rig/wayland_pointer.h"
#include "tests/end_to_end/surroundings.h"

namespace end_to_end {
namespace {

class Wayland : public Surroundings {
  protected:
    void SetUp() override {
        if (const auto reason = WaylandDesktop::whyUnavailable()) GTEST_SKIP() << *reason;
        Surroundings::SetUp();
    }

    Program::Setting settingOn(const WaylandDesktop& desktop) {
        Program::Setting onX11 = setting();
        onX11.environment = desktop.environmentFrom(onX11.environment);
        return onX11;
    }
};

std::optional<WaylandDesktop::Window> waitForWindow(const WaylandDesktop& desktop, pid_t program) {
    std::optional<WaylandDesktop::Window> window;
    static_cast<void>(waitFor([&] {
        window = desktop.windowOf(program);
        return window.has_value();
    }));
    return window;
}

// The width in pixels of the largest buffer that the program has given to the desktop. With WAYLAND_DEBUG the program
// prints its requests on standard error: create_buffer(new id, offset, width, height, ...).
int widthOfTheLargestBuffer(const Program& program) {
    const std::string requests = program.bytes(Stream::error);
    const std::string request = ".create_buffer(";
    int largest = 0;
    for (std::size_t at = requests.find(request); at != std::string::npos; at = requests.find(request, at + 1)) {
        int width = 0;
        std::sscanf(requests.c_str() + at, ".create_buffer(new id %*[^,], %*d, %d", &width);
        largest = std::max(largest, width);
    }
    return largest;
}

class WaylandAtScale : public Wayland, public testing::WithParamInterface<const char*> {};
INSTANTIATE_TEST_SUITE_P(Scales, WaylandAtScale, testing::Values("1", "1.5", "2"), [](const auto& scale) {
    std::string name = scale.param;
    std::replace(name.begin(), name.end(), '.', '_');
    return name;
});

TEST_P(WaylandAtScale, TheMainJobIsDoneInAWindowOf600By500WithoutTitleBar) {
    const double scale = std::stod(GetParam());
    const WaylandDesktop desktop(scale);
    const ScriptedServer server(website({Send{answerBytes(200, stored)}}), websitePort());
    Program::Setting debugging = settingOn(desktop);
    debugging.environment["WAYLAND_DEBUG"] = "1";
    Program program(debugging);
    const AccessibleProgram window(program.pid());

    const auto shown = waitForWindow(desktop, program.pid());
    ASSERT_TRUE(shown) << program.bytes(Stream::error);
    EXPECT_EQ(shown->width, 600);
    EXPECT_EQ(shown->height, 500);
    EXPECT_FALSE(shown->hasTitleBar);
    // Qt before 6.5 draws at the next whole scale.
    EXPECT_TRUE(waitFor([&] {
        const int width = widthOfTheLargestBuffer(program);
        return width == 600 * scale || width == 600 * std::ceil(scale);
    })) << widthOfTheLargestBuffer(program);

    ASSERT_TRUE(press(window, "Detect Hardware"));
    ASSERT_TRUE(shows(window, "Hardware detected successfully!")) << window.tree();
    ASSERT_TRUE(press(window, "Send to Website"));
    ASSERT_TRUE(opener_.waitForPages(1)) << program.bytes(Stream::output) << program.bytes(Stream::error);
    EXPECT_EQ(program.waitForExit(), success);
}

TEST_F(Wayland, TheWindowIsShownBeforeTheInstallReportIsAnswered) {
    const WaylandDesktop desktop;
    std::promise<void> windowWasSeen;
    const ScriptedServer server(heldBack("/api/track-install/", windowWasSeen.get_future(), website({})),
                                websitePort());
    Program program(settingOn(desktop));
    EXPECT_TRUE(server.waitForRequests(1));
    const std::string picture = home_.path() / "picture.png";
    const bool shown = waitFor([&] { return desktop.saveScreenshot(picture) && showsTheBlueButton(picture); });
    windowWasSeen.set_value();
    EXPECT_TRUE(shown);
    // Otherwise the program has given up waiting, and the window came after that.
    EXPECT_TRUE(program.waitForLine("✅ Install tracked successfully"));
}

TEST_F(Wayland, DraggingTheBackgroundMovesTheWindowAndTheNextClickPresses) {
    const WaylandDesktop desktop;
    WaylandPointer pointer(desktop.display(), desktop.width(), desktop.height());
    ASSERT_TRUE(pointer.works());
    const ScriptedServer server(website({}), websitePort());
    Program program(settingOn(desktop));
    const auto before = waitForWindow(desktop, program.pid());
    ASSERT_TRUE(before);
    ASSERT_TRUE(program.waitForLine("✅ Usage tracked successfully"));

    // The desktop decides how far the pointer moves before the window follows.
    constexpr int held = 400;
    pointer.moveTo(before->x + 300, before->y + held);
    pointer.holdButton();
    int x = before->x + 300;
    ASSERT_TRUE(waitFor([&] {
        pointer.moveTo(--x, before->y + held);
        const auto now = desktop.windowOf(program.pid());
        return now && now->x != before->x;
    }));
    const auto following = desktop.windowOf(program.pid());
    ASSERT_TRUE(following);
    pointer.moveTo(x - 100, before->y + held - 50);
    pointer.releaseButton();
    const auto after = desktop.windowOf(program.pid());
    ASSERT_TRUE(after);
    EXPECT_EQ(after->x, following->x - 100);
    EXPECT_EQ(after->y, following->y - 50);

    // The middle of "Detect Hardware" while the window shows no list and no banner.
    pointer.click(after->x + 300, after->y + 186);
    EXPECT_TRUE(shows(AccessibleProgram(program.pid()), "Hardware detected successfully!"));
}

TEST_F(Wayland, ADesktopFindsTheIconByTheNameOfTheDesktopEntry) {
    const WaylandDesktop desktop;
    Program program(settingOn(desktop));
    const auto shown = waitForWindow(desktop, program.pid());
    ASSERT_TRUE(shown);
    const std::filesystem::path entries = DESKTOP_ENTRIES;
    EXPECT_TRUE(std::filesystem::exists(entries / (shown->applicationId + ".desktop"))) << shown->applicationId;
}

TEST_F(Wayland, ADisplayThatGoesAwayEndsTheProgramAndKeepsTheId) {
    WaylandDesktop desktop;
    const ScriptedServer server(website({}), websitePort());
    Program program(settingOn(desktop));
    ASSERT_TRUE(program.waitForLine("✅ Usage tracked successfully"));
    desktop.end();
    const auto exit = program.waitForExit();
    ASSERT_TRUE(exit);
    EXPECT_EQ(exit->kind, ExitStatus::Kind::status);
    EXPECT_TRUE(exit->number == 1 || exit->number == 255) << exit->number;  // The toolkit's versions differ.
    EXPECT_NE(program.bytes(Stream::error), "");
    EXPECT_EQ("📤 Device ID: " + valueIn(settingsFile(), "com.velmora.device_id"), program.log().at(1));
}

}  // namespace
}  // namespace end_to_end
