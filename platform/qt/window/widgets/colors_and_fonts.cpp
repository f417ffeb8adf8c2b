#include "platform/qt/window/widgets/colors_and_fonts.h"

#include <QApplication>
#include <QScreen>

namespace platform {

namespace {

bool isDark(const QPalette& palette) { return palette.color(QPalette::Window).lightness() < 128; }

QColor textColor(const QPalette& palette, double opacity) {
    QColor color = palette.color(QPalette::Active, QPalette::WindowText);
    color.setAlphaF(static_cast<float>(opacity));
    return color;
}

// The styles' sizes are meant for body text of this size.
constexpr double usualSystemFontPixels = 13;
constexpr double pointsPerInch = 72;
// With larger texts the window could not hold everything.
constexpr double largestScale = 1.5;

struct StyleFont {
    int pixels;
    Weight weight;
};

StyleFont fontOf(TextStyle style) {
    switch (style) {
        case TextStyle::title2: return {17, Weight::regular};
        case TextStyle::headline: return {13, Weight::semibold};
        case TextStyle::subheadline: return {11, Weight::regular};
        case TextStyle::body: return {13, Weight::regular};
    }
    return {13, Weight::regular};
}

QFont::Weight toolkitWeight(Weight weight) {
    switch (weight) {
        case Weight::regular: return QFont::Normal;
        case Weight::semibold: return QFont::DemiBold;
        case Weight::bold: return QFont::Bold;
    }
    return QFont::Normal;
}

}  // namespace

QColor toolkitColor(Color color, const QPalette& palette) {
    const bool dark = isDark(palette);
    switch (color) {
        case Color::primary: return textColor(palette, 0.85);
        case Color::secondary: return textColor(palette, 0.6);
        case Color::blue: return dark ? QColor(10, 132, 255) : QColor(0, 122, 255);
        case Color::green: return dark ? QColor(50, 215, 75) : QColor(40, 205, 65);
        case Color::red: return dark ? QColor(255, 69, 58) : QColor(255, 59, 48);
        case Color::gray: return dark ? QColor(152, 152, 157) : QColor(142, 142, 147);
        case Color::white: return QColor(255, 255, 255);
    }
    return {};
}

// Not by QFontInfo, which would load an unused font.
double textScale() {
    const QFont font = QApplication::font();
    const QScreen* screen = QGuiApplication::primaryScreen();
    const double pixelsPerPoint = (screen != nullptr ? screen->logicalDotsPerInchY() : 96) / pointsPerInch;
    const double pixels = font.pixelSize() > 0 ? font.pixelSize() : font.pointSizeF() * pixelsPerPoint;
    return qBound(1.0, pixels / usualSystemFontPixels, largestScale);
}

QFont toolkitFont(TextStyle style, std::optional<Weight> weight) {
    const StyleFont own = fontOf(style);
    QFont font = QApplication::font();
    font.setPixelSize(qRound(own.pixels * textScale()));
    font.setWeight(toolkitWeight(weight.value_or(own.weight)));
    return font;
}

}  // namespace platform
