// Contrasts of the window's colours, and the colour of a pressed button, which no picture shows.
#include <QApplication>
#include <QImage>
#include <QLabel>
#include <QPixmap>
#include <cmath>
#include <cstdio>

#include "platform/qt/window/widgets/colors_and_fonts.h"
#include "tests/window/appearance.h"
#include "tests/window/scenes.h"

namespace window_test {
namespace {

using platform::Color;
using platform::toolkitColor;
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

// The ratio by the web's accessibility guidelines, from 1 to 21.
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

    [[nodiscard]] QColor named(Color color) const { return toolkitColor(color, palette_); }

    QPalette palette_;
    QColor ground_ = palette_.color(QPalette::Window);
};

TEST_P(WindowColours, AButtonHeldDownIsDarkerAtOnce) {
    QAbstractButton* detect = button("Detect Hardware");
    const QPoint besideItsWords = placeOf(detect).topLeft() + QPoint(12, 8);
    for (const bool isDown : {true, false}) {
        detect->setDown(isDown);
        settle();
        const QColor found = window_.grab().toImage().pixelColor(besideItsWords);
        EXPECT_TRUE(isNearly(found, isDown ? named(Color::blue).darker(115) : named(Color::blue)))
            << found.name().toStdString();
    }
}

// The rows of the table in docs/accessibility.md.
TEST_P(WindowColours, TextsHaveEnoughContrast) {
    const QColor primary = named(Color::primary);
    const QColor secondary = named(Color::secondary);
    const auto ratio = [this](const QColor& text, const std::optional<Color>& tint) {
        const QColor ground = tint ? over(ground_, named(*tint), 0.1) : ground_;
        return contrast(over(ground, text), ground);
    };
    const auto row = [](const char* what, double value, double least) {
        std::printf("%-40s %.2f\n", what, value);
        EXPECT_GE(value, least) << what;
    };
    constexpr double readable = 4.5;
    constexpr double anything = 0;
    const QColor base = palette_.color(QPalette::Base);
    row("primary on the window", ratio(primary, std::nullopt), readable);
    row("secondary on the window", ratio(secondary, std::nullopt), readable);
    row("primary on the list", ratio(primary, Color::gray), readable);
    row("secondary on the list", ratio(secondary, Color::gray), readable);
    row("primary on an info banner", ratio(primary, Color::blue), readable);
    row("primary on a success banner", ratio(primary, Color::green), readable);
    row("primary on an error banner", ratio(primary, Color::red), readable);
    row("address in its field", contrast(palette_.color(QPalette::Text), base), readable);
    row("white on blue", contrast(Qt::white, named(Color::blue)), anything);
    row("white on green", contrast(Qt::white, named(Color::green)), anything);
    row("field's border on the window", contrast(over(ground_, named(Color::gray)), ground_), anything);
    row("focus ring of field and list", contrast(named(Color::blue), ground_), anything);
}

std::string nameOf(const testing::TestParamInfo<Appearance>& appearance) {
    return appearance.param == Appearance::light ? "Light" : "Dark";
}

INSTANTIATE_TEST_SUITE_P(In, WindowColours, testing::Values(Appearance::light, Appearance::dark), nameOf);

}  // namespace
}  // namespace window_test
