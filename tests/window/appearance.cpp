#include "tests/window/appearance.h"

#include <QFontDatabase>

namespace window_test {

QPalette paletteOf(Appearance appearance) {
    const bool dark = appearance == Appearance::dark;
    const QColor text = dark ? Qt::white : Qt::black;
    QPalette palette;
    for (const QPalette::ColorRole role :
         {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::HighlightedText}) {
        palette.setColor(role, text);
    }
    palette.setColor(QPalette::Window, dark ? QColor(50, 50, 50) : QColor(236, 236, 236));
    palette.setColor(QPalette::Base, dark ? QColor(30, 30, 30) : QColor(255, 255, 255));
    palette.setColor(QPalette::PlaceholderText, dark ? QColor(255, 255, 255, 128) : QColor(0, 0, 0, 128));
    palette.setColor(QPalette::Highlight, dark ? QColor(63, 99, 139) : QColor(179, 215, 255));
    return palette;
}

QFont fixedFont(int pixels) {
    const QString family = QStringLiteral("DejaVu Sans");
    QFont font =
        QFontDatabase::hasFamily(family) ? QFont(family) : QFontDatabase::systemFont(QFontDatabase::GeneralFont);
    font.setPixelSize(pixels);
    font.setHintingPreference(QFont::PreferNoHinting);
    font.setStyleStrategy(QFont::NoSubpixelAntialias);
    return font;
}

}  // namespace window_test
