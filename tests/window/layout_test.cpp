// Positions and sizes in the window, in points, at any scale of the screen.
#include <QLabel>
#include <QScrollBar>
#include <QTest>

#include "tests/window/shown_window.h"

namespace window_test {
namespace {

using StatusType = ContentView::StatusType;

constexpr int padding = 16;
constexpr QRect wholeWindow(0, 0, 600, 500);

using WindowLayout = ShownWindow;

TEST_F(WindowLayout, Is600By500WithoutTitleBarInEveryState) {
    EXPECT_TRUE(window_.windowFlags().testFlag(Qt::FramelessWindowHint));
    EXPECT_EQ(window_.size(), QSize(600, 500));

    show(recordOfLength(10'000));
    banner(StatusType::error, std::string(10'000, 'W'));
    field()->setText(QString(10'000, 'W'));
    settle();
    EXPECT_EQ(window_.size(), QSize(600, 500));
}

TEST_F(WindowLayout, StacksItsPartsTwentyPointsApart) {
    show(record());
    banner(StatusType::success, "Hardware detected successfully!");

    const QRect title = placeOf(label("🔍 Hardware Detector"));
    const QRect subtitle = placeOf(label("Detect your PC hardware for Velmora"));
    const QRect banner = placeOf(bannerAround("Hardware detected successfully!"));
    const QRect caption = placeOf(label("Website URL:"));
    const QRect address = placeOf(field());
    const QRect detect = placeOf(button("Detect Hardware"));
    const QRect area = placeOf(list());
    const QRect send = placeOf(button("Send to Website"));

    const auto between = [](const QRect& upper, const QRect& lower) { return lower.top() - upper.bottom() - 1; };
    EXPECT_EQ(title.top(), padding + 20);
    EXPECT_EQ(between(title, subtitle), 8);
    EXPECT_EQ(between(subtitle, banner), 20);
    EXPECT_EQ(between(banner, caption), 20);
    EXPECT_EQ(between(caption, address), 8);
    EXPECT_EQ(between(address, detect), 20);
    EXPECT_EQ(between(detect, area), 20);
    EXPECT_EQ(between(area, send), 20);
}

TEST_F(WindowLayout, PadsTheFieldTheListAndTheButtonsTwiceAndTheBannerOnce) {
    show(record());
    banner(StatusType::info, "short");
    for (const QWidget* widget :
         {static_cast<QWidget*>(field()), static_cast<QWidget*>(list()),
          static_cast<QWidget*>(button("Detect Hardware")), static_cast<QWidget*>(button("Send to Website"))}) {
        EXPECT_EQ(placeOf(widget).left(), 2 * padding);
        EXPECT_EQ(placeOf(widget).width(), 600 - 4 * padding);
    }
    EXPECT_EQ(placeOf(bannerAround("short")).left(), padding);
    EXPECT_EQ(placeOf(bannerAround("short")).width(), 600 - 2 * padding);
}

TEST_F(WindowLayout, CentresTheHeaderAndTheBannersContent) {
    banner(StatusType::info, "short");
    for (const char* text : {"🔍 Hardware Detector", "Detect your PC hardware for Velmora"}) {
        const QRect place = placeOf(label(text));
        EXPECT_NEAR(place.left() + place.right() + 1, 600, 2) << text;
    }
    const QRect content = placeOf(label("short")->parentWidget());
    EXPECT_NEAR(content.left() + content.right() + 1, 600, 2);
}

TEST_F(WindowLayout, TheBannerSpansTheWidthWithAnyText) {
    for (const std::size_t length : {1U, 100U, 1'000U}) {
        const std::string message(length, 'm');
        banner(StatusType::error, message);
        EXPECT_EQ(placeOf(bannerAround(message)).width(), 600 - 2 * padding) << length;
    }
}

TEST_F(WindowLayout, ButtonsAreWhollyInsideTheWindowInEveryState) {
    for (const std::size_t length : {1U, 60U, 1'000U, 10'000U}) {
        show(recordOfLength(length));
        for (const std::size_t bannerLength : {0U, 10U, 200U}) {
            const std::string message(bannerLength, 'm');
            banner(StatusType::error, message);
            for (const char* name : {"Detect Hardware", "Send to Website"}) {
                ASSERT_NE(button(name), nullptr);
                EXPECT_TRUE(wholeWindow.contains(placeOf(button(name))))
                    << name << " with values of " << length << " and a banner of " << bannerLength;
                EXPECT_EQ(placeOf(button(name)).height(), placeOf(button("Detect Hardware")).height());
                EXPECT_GE(placeOf(button(name)).height(), button(name)->sizeHint().height());
            }
        }
    }
}

TEST_F(WindowLayout, ABusyButtonIsAsHighAsAnIdleOne) {
    const int idle = placeOf(button("Detect Hardware")).height();
    button("Detect Hardware")->click();
    settle();
    EXPECT_EQ(placeOf(button("Detecting...")).height(), idle);
}

TEST_F(WindowLayout, TheListIsAtMost200HighAndScrolls) {
    show(record("first\nsecond"));
    EXPECT_LE(list()->height(), 200);

    show(recordOfLength(1'000));
    EXPECT_LE(list()->height(), 200);
    EXPECT_GT(list()->widget()->height(), 200);
    EXPECT_GT(list()->verticalScrollBar()->maximum(), 0);
    EXPECT_EQ(list()->widget()->width(), list()->viewport()->width());
}

TEST_F(WindowLayout, TheListIs200HighIfThereIsRoom) {
    window_.setFixedHeight(900);
    show(recordOfLength(1'000));
    EXPECT_EQ(list()->height(), 200);
}

TEST_F(WindowLayout, TheListShrinksSoThatEverythingFits) {
    show(record());
    const int alone = list()->height();
    banner(StatusType::success, "Hardware detected successfully!");
    EXPECT_LT(list()->height(), alone);
    EXPECT_GE(list()->height(), 24);
    EXPECT_TRUE(wholeWindow.contains(placeOf(button("Send to Website"))));
}

TEST_F(WindowLayout, TheLastRowCanBeScrolledIntoView) {
    show(recordOfLength(1'000));
    list()->verticalScrollBar()->setValue(list()->verticalScrollBar()->maximum());
    settle();
    const QRect area = placeOf(list()->viewport());
    const QWidget* content = list()->widget();
    EXPECT_EQ(placeOf(content).bottom(), area.bottom());
}

TEST_F(WindowLayout, TheLabelColumnIs120WideWithAnyValue) {
    for (const std::size_t length : {1U, 100U, 10'000U}) {
        show(recordOfLength(length));
        for (const char* name : {"OS:", "Processor:", "Graphics Card:", "RAM:", "Storage:"}) {
            ASSERT_NE(label(name), nullptr);
            EXPECT_EQ(label(name)->parentWidget()->width(), 120) << name << " beside a value of " << length;
            EXPECT_EQ(placeOf(label(name)).left(), 3 * padding) << name;
        }
    }
}

TEST_F(WindowLayout, ValuesStartAtTheSameEdgeAndNeverWidenTheWindow) {
    HardwareInfo hardware = record(std::string(10'000, 'W'));
    hardware.graphicsCard = "short";
    show(hardware);
    const int edge = placeOf(label("macOS")).left();
    EXPECT_EQ(edge, 3 * padding + 120 + 8);
    EXPECT_EQ(placeOf(label("short 4GB")).left(), edge);
    EXPECT_EQ(placeOf(label(hardware.processor)).left(), edge);
    EXPECT_LE(placeOf(label(hardware.processor)).right(), 600 - 3 * padding);
}

TEST_F(WindowLayout, RowsAreTwelvePointsApart) {
    show(record());
    const QRect os = placeOf(label("OS:"));
    const QRect processor = placeOf(label("Processor:"));
    EXPECT_EQ(processor.top() - os.bottom() - 1, 12);
    EXPECT_EQ(os.top() - placeOf(label("Detected Hardware:")).bottom() - 1, 12);
}

TEST_F(WindowLayout, TextsAreShownUnchanged) {
    const std::string odd = "<b>bold</b> &amp; &Detect <img src='x'> %1 \\n";
    show(record(odd));
    banner(StatusType::error, odd + "!");

    EXPECT_NE(label(odd), nullptr);
    ASSERT_NE(label(odd + "!"), nullptr);
    EXPECT_EQ(qobject_cast<QLabel*>(label(odd))->textFormat(), Qt::PlainText);
}

TEST_F(WindowLayout, ALongValueIsReadableToItsEnd) {
    const std::string value(500, 'W');
    show(record(value));
    const QWidget* shown = label(value);
    EXPECT_GE(shown->height(), shown->heightForWidth(shown->width()));
}

// The toolkit's own wrapping of such a word would take minutes.
TEST_F(WindowLayout, AWordOfAMegabyteWraps) {
    const std::string value(1'000'000, 'W');
    show(record(value));
    EXPECT_GT(label(value)->height(), 100'000);
    EXPECT_LE(placeOf(label(value)).right(), 600 - 3 * padding);
}

TEST_F(WindowLayout, TheWindowsMinimumAndMaximumAreItsSize) {
    EXPECT_EQ(window_.minimumSize(), QSize(600, 500));
    EXPECT_EQ(window_.maximumSize(), QSize(600, 500));
}

}  // namespace
}  // namespace window_test
