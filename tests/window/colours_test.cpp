// What colours are to be seen in the window, and how well they can be told apart.
#include <QApplication>
#include <QImage>
#include <QLabel>
#include <QPixmap>
#include <cmath>
#include <cstdio>

#include "platform/qt/widgets/palette.h"
#include "tests/window/appearance.h"
#include "tests/window/scenes.h"

namespace window_test {
namespace {

using platform::Color;
using platform::toolkitColor;
using StatusType = ContentView::StatusType;

QColor over(const QColor& ground, const QColor& color, double opacity) {
    const auto mixed = [opacity](int above, int below) { return qRound(above * opacity + below * (1 - opacity)); };
    return {mixed(color.red(), ground.red()), mixed(color.green(), ground.green()), mixed(color.blue(), ground.blue())};
}

QColor over(const QColor& ground, const QColor& color) { return over(ground, color, color.alphaF()); }

double luminance(const QColor& color) {
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

// As the web's accessibility guidelines count it, from 1 to 21.
double contrast(const QColor& one, const QColor& other) {
    const double lighter = std::max(luminance(one), luminance(other));
    const double darker = std::min(luminance(one), luminance(other));
    return (lighter + 0.05) / (darker + 0.05);
}

bool isNearly(const QColor& one, const QColor& other) {
    constexpr int rounding = 2;
    return qAbs(one.red() - other.red()) <= rounding && qAbs(one.green() - other.green()) <= rounding &&
           qAbs(one.blue() - other.blue()) <= rounding;
}

class WindowColours : public ScenicWindow, public testing::WithParamInterface<Appearance> {
  protected:
    WindowColours() : palette_(paletteOf(GetParam())) { QApplication::setPalette(palette_); }
    ~WindowColours() override { QApplication::setPalette(paletteOf(Appearance::light)); }

    // At a place in the window that nothing is written on.
    void expectAt(const QPoint& place, const QColor& expected) {
        settle();
        const QColor found = window_.grab().toImage().pixelColor(place * window_.devicePixelRatioF());
        EXPECT_TRUE(isNearly(found, expected))
            << found.name().toStdString() << " instead of " << expected.name().toStdString();
    }

    // Between its edge and its words.
    [[nodiscard]] QPoint fillOf(const QWidget* widget) const { return placeOf(widget).topLeft() + QPoint(12, 8); }

    [[nodiscard]] QColor named(Color color) const { return toolkitColor(color, palette_); }

    QPalette palette_;
    QColor ground_ = palette_.color(QPalette::Window);
};

TEST_P(WindowColours, ABannerIsTintedByATenthOfTheColourOfItsKind) {
    for (const auto& [type, color] :
         {std::pair(StatusType::info, Color::blue), std::pair(StatusType::success, Color::green),
          std::pair(StatusType::error, Color::red)}) {
        banner(type, "message");
        expectAt(fillOf(bannerAround("message")), over(ground_, named(color), 0.1));
    }
}

TEST_P(WindowColours, TheListIsTintedByATenthOfGray) {
    show(record());
    expectAt(fillOf(list()), over(ground_, named(Color::gray), 0.1));
}

TEST_P(WindowColours, TheButtonsAreBlueAndGreen) {
    show(record());
    expectAt(fillOf(button("Detect Hardware")), named(Color::blue));
    expectAt(fillOf(button("Send to Website")), named(Color::green));
}

TEST_P(WindowColours, ADisabledButtonIsHalfAsStrong) {
    show(record());
    field()->clear();
    button("Detect Hardware")->click();
    settle();
    expectAt(fillOf(button("Detecting...")), over(ground_, named(Color::blue), 0.5));
    expectAt(fillOf(button("Send to Website")), over(ground_, named(Color::green), 0.5));
}

TEST_P(WindowColours, AButtonHeldDownIsDarkerAtOnce) {
    QAbstractButton* detect = button("Detect Hardware");
    detect->setDown(true);
    expectAt(fillOf(detect), named(Color::blue).darker(115));
    detect->setDown(false);
    expectAt(fillOf(detect), named(Color::blue));
}

TEST_P(WindowColours, NothingButTheWindowIsToBeSeenBelowTheButtons) {
    expectAt({300, 490}, ground_);
    expectAt({300, 300}, ground_);
}

// Each row of the table that docs/accessibility.md shows.
TEST_P(WindowColours, TextsCanBeReadOnWhatTheyStandOn) {
    const QColor primary = named(Color::primary);
    const QColor secondary = named(Color::secondary);
    const auto ratio = [this](const QColor& text, const std::optional<Color>& tint) {
        const QColor ground = tint ? over(ground_, named(*tint), 0.1) : ground_;
        return contrast(over(ground, text), ground);
    };
    constexpr double readable = 4.5;
    EXPECT_GE(ratio(primary, std::nullopt), readable);
    EXPECT_GE(ratio(secondary, std::nullopt), readable);
    EXPECT_GE(ratio(primary, Color::gray), readable);
    EXPECT_GE(ratio(secondary, Color::gray), readable);
    for (const Color kind : {Color::blue, Color::green, Color::red}) EXPECT_GE(ratio(primary, kind), readable);
    const QColor base = palette_.color(QPalette::Base);
    EXPECT_GE(contrast(palette_.color(QPalette::Text), base), readable);

    const auto row = [](const char* what, double value) { std::printf("%-40s %.2f\n", what, value); };
    row("primary on the window", ratio(primary, std::nullopt));
    row("secondary on the window", ratio(secondary, std::nullopt));
    row("primary on the list", ratio(primary, Color::gray));
    row("secondary on the list", ratio(secondary, Color::gray));
    row("primary on an info banner", ratio(primary, Color::blue));
    row("primary on a success banner", ratio(primary, Color::green));
    row("primary on an error banner", ratio(primary, Color::red));
    row("address in its field", contrast(palette_.color(QPalette::Text), base));
    row("white on blue", contrast(Qt::white, named(Color::blue)));
    row("white on green", contrast(Qt::white, named(Color::green)));
    row("field's border on the window", contrast(over(ground_, named(Color::gray)), ground_));
    row("focus ring of field and list", contrast(named(Color::blue), ground_));
}

std::string nameOf(const testing::TestParamInfo<Appearance>& appearance) {
    return appearance.param == Appearance::light ? "Light" : "Dark";
}

INSTANTIATE_TEST_SUITE_P(In, WindowColours, testing::Values(Appearance::light, Appearance::dark), nameOf);

}  // namespace
}  // namespace window_test
