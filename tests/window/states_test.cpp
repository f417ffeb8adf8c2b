// What the window shows in each of its states.
#include <QLabel>
#include <QTest>

#include "platform/qt/widgets/spinner.h"
#include "platform/qt/widgets/symbol_icon.h"
#include "tests/window/shown_window.h"

namespace window_test {
namespace {

using fakes::machine;
using StatusType = ContentView::StatusType;
using Texts = std::vector<std::string>;

constexpr const char* title = "🔍 Hardware Detector";
constexpr const char* subtitle = "Detect your PC hardware for Velmora";
constexpr const char* address = "https://www.velmora.example";

using WindowStates = ShownWindow;

template <typename Kind>
int visible(const QWidget& widget) {
    int count = 0;
    for (const QWidget* each : widget.findChildren<QWidget*>()) {
        if (dynamic_cast<const Kind*>(each) != nullptr && each->isVisible()) ++count;
    }
    return count;
}

TEST_F(WindowStates, AtLaunchThereAreHeaderAddressAndDetectButtonAlone) {
    EXPECT_EQ(texts(), (Texts{title, subtitle, "Website URL:", address, "Detect Hardware"}));
    EXPECT_TRUE(button("Detect Hardware")->isEnabled());
    EXPECT_EQ(visible<platform::SymbolIcon>(window_), 0);
    EXPECT_EQ(visible<platform::Spinner>(window_), 0);
    EXPECT_EQ(list(), nullptr);
}

TEST_F(WindowStates, TheFieldShowsAnExampleAddressWhileItIsEmpty) {
    EXPECT_EQ(field()->placeholderText().left(8), "https://");
}

TEST_F(WindowStates, WhileDetectingTheButtonSpinsSaysSoAndIsDisabled) {
    button("Detect Hardware")->click();
    settle();

    EXPECT_EQ(texts(), (Texts{title, subtitle, "Website URL:", address, "Detecting..."}));
    EXPECT_FALSE(button("Detecting...")->isEnabled());
    EXPECT_EQ(visible<platform::Spinner>(*button("Detecting...")), 1);
}

TEST_F(WindowStates, ADetectionEndsWithBannerListAndSendButton) {
    machine().commands["/usr/sbin/sysctl -n machdep.cpu.brand_string"] = "Apple M1 Pro\n";
    machine().commands["/usr/sbin/sysctl -n hw.memsize"] = "17179869184\n";
    machine().commands["/usr/sbin/system_profiler SPDisplaysDataType"] = "      Chipset Model: Apple M1 GPU\n";
    machine().commands["/bin/df -h /"] = "Filesystem Size\n/dev/disk3s1s1 494G\n";
    button("Detect Hardware")->click();
    finishWork();

    EXPECT_EQ(texts(), (Texts{title, subtitle, "Hardware detected successfully!", "Website URL:", address,
                              "Detect Hardware", "Detected Hardware:", "OS:", "macOS", "Processor:", "Apple M1 Pro",
                              "Graphics Card:", "Apple M1 GPU 4GB", "RAM:", "16 GB DDR4", "Storage:", "494 GB SSD",
                              "Send to Website"}));
    EXPECT_TRUE(button("Detect Hardware")->isEnabled());
    EXPECT_TRUE(button("Send to Website")->isEnabled());
    EXPECT_EQ(visible<platform::SymbolIcon>(window_), 1);
    EXPECT_EQ(visible<platform::Spinner>(window_), 0);
}

TEST_F(WindowStates, DetectingAgainHidesTheBannerAndKeepsTheOldList) {
    show(record("the old one"));
    banner(StatusType::error, "an old banner");
    button("Detect Hardware")->click();
    settle();

    EXPECT_EQ(label("an old banner"), nullptr);
    EXPECT_NE(label("the old one"), nullptr);
    EXPECT_FALSE(button("Detecting...")->isEnabled());
    EXPECT_TRUE(button("Send to Website")->isEnabled());

    finishWork();
    EXPECT_EQ(label("the old one"), nullptr);
    EXPECT_NE(label("Unknown"), nullptr);
}

TEST_F(WindowStates, WhileSendingTheSendButtonAloneIsBusy) {
    show(record());
    button("Send to Website")->click();
    settle();

    EXPECT_NE(label("Sending hardware data..."), nullptr);
    EXPECT_FALSE(button("Sending...")->isEnabled());
    EXPECT_EQ(visible<platform::Spinner>(*button("Sending...")), 1);
    EXPECT_TRUE(button("Detect Hardware")->isEnabled());
    EXPECT_EQ(visible<platform::Spinner>(window_), 1);
}

TEST_F(WindowStates, ASuccessSaysThatTheWebsiteOpens) {
    machine().website = [](const auto&) { return fakes::answered(200, R"({"success": true})"); };
    show(record());
    button("Send to Website")->click();
    finishWork();

    EXPECT_NE(label("Hardware data sent successfully! Opening website..."), nullptr);
    EXPECT_TRUE(button("Send to Website")->isEnabled());
}

TEST_F(WindowStates, AFailureShowsTheErrorAndBothButtonsWorkAgain) {
    show(record());
    button("Send to Website")->click();
    finishWork();

    EXPECT_NE(label("Error: Failed to send hardware data. Check the console for details."), nullptr);
    EXPECT_TRUE(button("Send to Website")->isEnabled());
    EXPECT_TRUE(button("Detect Hardware")->isEnabled());
}

TEST_F(WindowStates, BothButtonsMayBeBusyAtOnce) {
    show(record());
    button("Send to Website")->click();
    button("Detect Hardware")->click();
    settle();

    EXPECT_FALSE(button("Sending...")->isEnabled());
    EXPECT_FALSE(button("Detecting...")->isEnabled());
    EXPECT_EQ(visible<platform::Spinner>(window_), 2);
}

TEST_F(WindowStates, AnEmptyAddressDisablesSendingAndNotDetecting) {
    show(record());
    field()->selectAll();
    QTest::keyClick(field(), Qt::Key_Delete);
    settle();

    EXPECT_FALSE(button("Send to Website")->isEnabled());
    EXPECT_TRUE(button("Detect Hardware")->isEnabled());
}

TEST_F(WindowStates, AnAddressOfBlanksEnablesSending) {
    show(record());
    field()->selectAll();
    QTest::keyClicks(field(), "  ");
    settle();

    EXPECT_EQ(view_.websiteUrl.get(), "  ");
    EXPECT_TRUE(button("Send to Website")->isEnabled());
}

TEST_F(WindowStates, EveryKeystrokeIsKept) {
    field()->setFocus();
    field()->selectAll();
    QTest::keyClicks(field(), "ab");
    EXPECT_EQ(view_.websiteUrl.get(), "ab");
    QTest::keyClicks(field(), "c");
    EXPECT_EQ(view_.websiteUrl.get(), "abc");
}

TEST_F(WindowStates, TheFieldShowsAnAddressThatTheProgramSets) {
    view_.websiteUrl.set("http://set.example/ü");
    settle();
    EXPECT_EQ(field()->text().toStdString(), "http://set.example/ü");
}

TEST_F(WindowStates, TextsAreShownAsTheyStand) {
    const std::string odd = "<b>bold</b> &amp; &Detect <img src='x'> %1 \\n";
    show(record(odd));
    banner(StatusType::error, odd + "!");

    EXPECT_NE(label(odd), nullptr);
    ASSERT_NE(label(odd + "!"), nullptr);
    EXPECT_EQ(qobject_cast<QLabel*>(label(odd))->textFormat(), Qt::PlainText);
}

TEST_F(WindowStates, ABannerOfAnyKindHasOneSymbol) {
    for (const StatusType type : {StatusType::info, StatusType::success, StatusType::error}) {
        banner(type, "message");
        EXPECT_EQ(visible<platform::SymbolIcon>(window_), 1);
    }
    banner(StatusType::error, "");
    EXPECT_EQ(visible<platform::SymbolIcon>(window_), 0);
}

}  // namespace
}  // namespace window_test
