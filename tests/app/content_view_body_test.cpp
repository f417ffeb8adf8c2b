#include "app/content_view.h"

#include <gtest/gtest.h>

#include "app/hardware_detector_app.h"
#include "app/website_base_url.h"
#include "tests/app/outline.h"
#include "tests/fakes/fakes.h"

namespace {

using StatusType = ContentView::StatusType;

class ContentViewBody : public testing::Test {
  protected:
    void SetUp() override { fakes::reset(); }

    [[nodiscard]] std::string outline() const { return outlineOf(view_.body()); }
    [[nodiscard]] bool shows(const std::string& text) const { return outline().find(text) != std::string::npos; }

    void listHardware() const {
        view_.detectedHardware.set(
            HardwareInfo{"macOS", "M1", "M1 GPU", 16, "DDR4", 2666, 494, "SSD", "Not Applicable", 8});
    }

    ContentView view_;
};

TEST_F(ContentViewBody, ShowsOnlyHeaderAddressAndDetectButtonAtLaunch) {
    EXPECT_EQ(outline(), R"(vstack center 20 | padding all 16 | on appear
  vstack center 8 | padding top 20
    text "🔍 Hardware Detector" title2 bold
    text "Detect your PC hardware for Velmora" subheadline secondary
  nothing
  vstack leading 8 | padding horizontal 16
    text "Website URL:" headline
    field "https://www.velmora.example" (https://your-website.example) named Website URL:
  button | enabled | padding horizontal 16
    hstack center 8 | stretch center | padding all 16 | background blue 1.0 corners 8 | foreground white
      nothing
      text "Detect Hardware" body
  nothing
  nothing
  spacer
)");
}

TEST_F(ContentViewBody, ListsTheHardwareInFiveRowsWithTheSendButtonBelow) {
    listHardware();
    EXPECT_TRUE(shows(R"(  scroll max 200 | padding horizontal 16
    vstack leading 12 | padding all 16 | stretch leading | background gray 0.1 corners 8
      text "Detected Hardware:" headline
      hstack center 8 | spoken as one
        text "OS:" body semibold | width 120 leading
        text "macOS" body secondary
        spacer
      hstack center 8 | spoken as one
        text "Processor:" body semibold | width 120 leading
        text "M1" body secondary
        spacer
      hstack center 8 | spoken as one
        text "Graphics Card:" body semibold | width 120 leading
        text "M1 GPU 8GB" body secondary
        spacer
      hstack center 8 | spoken as one
        text "RAM:" body semibold | width 120 leading
        text "16 GB DDR4" body secondary
        spacer
      hstack center 8 | spoken as one
        text "Storage:" body semibold | width 120 leading
        text "494 GB SSD" body secondary
        spacer
  button | enabled | padding horizontal 16
    hstack center 8 | stretch center | padding all 16 | background green 1.0 corners 8 | foreground white
      nothing
      text "Send to Website" body
  spacer
)")) << outline();
}

TEST_F(ContentViewBody, NegativeNumbersAreWrittenPlainly) {
    view_.detectedHardware.set(HardwareInfo{"", "", "", -1, "", 0, -1234567, "", "", -4});
    EXPECT_TRUE(shows("\" -4GB\""));
    EXPECT_TRUE(shows("\"-1 GB \""));
    EXPECT_TRUE(shows("\"-1234567 GB \""));
}

TEST_F(ContentViewBody, FrequencyAndDirectxAreNotShown) {
    listHardware();
    EXPECT_FALSE(shows("2666"));
    EXPECT_FALSE(shows("Not Applicable"));
}

TEST_F(ContentViewBody, TheBannerHasTheSymbolAndColourOfItsType) {
    struct Row {
        StatusType type;
        const char* symbol;
        const char* background;
    };
    for (const Row& row : {Row{StatusType::success, "symbol checkmark.circle.fill green", "background green 0.1"},
                           Row{StatusType::error, "symbol xmark.circle.fill red", "background red 0.1"},
                           Row{StatusType::info, "symbol info.circle.fill blue", "background blue 0.1"}}) {
        view_.statusType.set(row.type);
        view_.statusMessage.set("<b>words</b>");
        EXPECT_TRUE(shows(std::string("  hstack center 8 | padding all 16 | stretch center | ") + row.background +
                          " corners 8 | announced\n    " + row.symbol +
                          "\n    text \"<b>words</b>\" subheadline primary\n"))
            << outline();
    }
}

TEST_F(ContentViewBody, TheBannerIsHiddenWhileTheMessageIsEmpty) {
    view_.statusType.set(StatusType::success);
    EXPECT_FALSE(shows("symbol"));
}

TEST_F(ContentViewBody, TheDetectButtonIsBusyAndDisabledWhileDetectingOnly) {
    view_.isSending.set(true);
    EXPECT_TRUE(shows("button | enabled | padding horizontal 16"));
    view_.isDetecting.set(true);
    EXPECT_TRUE(shows("button | disabled | padding horizontal 16"));
    EXPECT_TRUE(shows("      spinner 0.8 | padding trailing 8\n      text \"Detecting...\" body\n")) << outline();
    EXPECT_FALSE(shows("Detect Hardware"));
}

TEST_F(ContentViewBody, TheSendButtonIsBusyAndDisabledWhileSendingOnly) {
    listHardware();
    view_.isDetecting.set(true);
    EXPECT_TRUE(shows("button | enabled"));
    view_.isSending.set(true);
    EXPECT_FALSE(shows("button | enabled"));
    EXPECT_TRUE(shows("      spinner 0.8 | padding trailing 8\n      text \"Sending...\" body\n")) << outline();
}

TEST_F(ContentViewBody, AnEmptyAddressDisablesSendButNotDetect) {
    listHardware();
    view_.websiteUrl.set("");
    const std::string both = outline();
    const std::size_t enabled = both.find("button | enabled");
    const std::size_t disabled = both.find("button | disabled");
    EXPECT_LT(enabled, disabled);
    EXPECT_LT(both.find("Detect Hardware"), disabled);
    EXPECT_LT(disabled, both.find("Send to Website"));
}

TEST_F(ContentViewBody, AnAddressOfBlanksEnablesSend) {
    listHardware();
    view_.websiteUrl.set(" ");
    EXPECT_FALSE(shows("button | disabled"));
}

TEST_F(ContentViewBody, TypingInTheFieldChangesTheAddress) {
    fieldIn(view_.body())->onChange(" typed ");
    EXPECT_EQ(view_.websiteUrl.get(), " typed ");
}

TEST_F(ContentViewBody, OnAppearReportsToTheUnchangedAddress) {
    view_.websiteUrl.set(" http://odd ");
    const platform::View body = view_.body();
    const auto& hook = std::get<platform::OnAppear>(body.modifiers().back());
    hook.action();
    EXPECT_EQ(fakes::machine().log.at(0), "📤 Attempting to track install to:  http://odd /api/track-install/");
    EXPECT_EQ(fakes::machine().log.at(5), "📤 Attempting to track usage to:  http://odd /api/track-usage/");
}

TEST(HardwareDetectorAppWindow, HasTheProgramsNameAndIs600By500) {
    const platform::WindowDescription scene = HardwareDetectorApp().body();
    EXPECT_EQ(scene.name, "Hardware Detector");
    EXPECT_EQ(scene.width, 600);
    EXPECT_EQ(scene.height, 500);
    EXPECT_NE(outlineOf(scene.content().body()).find(websiteBaseUrl()), std::string::npos);
}

TEST(HardwareDetectorAppWindow, EachNewWindowHasAFreshMainView) {
    fakes::reset();
    const platform::WindowDescription scene = HardwareDetectorApp().body();
    const platform::WindowDescription::Content first = scene.content();
    fieldIn(first.body())->onChange("typed");
    EXPECT_EQ(fieldIn(first.body())->text, "typed");
    EXPECT_EQ(fieldIn(scene.content().body())->text, websiteBaseUrl());
}

}  // namespace
