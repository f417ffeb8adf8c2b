// Drawing that the pictures don't show.
#include <QApplication>
#include <QImage>
#include <QLabel>
#include <QStyleHints>
#include <QTest>

#include "platform/qt/window/widgets/text_label.h"
#include "tests/window/appearance.h"
#include "tests/window/scenes.h"

namespace window_test {
namespace {

class WindowInk : public ScenicWindow {
  protected:
    QImage picture() {
        settle();
        return window_.grab().toImage();
    }

    // The part of `area` that differs from the colour at its corner; empty if none does.
    QRect inkIn(const QRect& area) {
        const QImage image = picture();
        const QRgb ground = image.pixel(area.topLeft());
        QRect ink;
        for (int y = area.top(); y <= area.bottom(); ++y) {
            for (int x = area.left(); x <= area.right(); ++x) {
                if (isFar(image.pixel(x, y), ground)) ink |= QRect(x, y, 1, 1);
            }
        }
        return ink;
    }

    static bool isFar(QRgb one, QRgb other) {
        constexpr int faint = 40;
        return qAbs(qRed(one) - qRed(other)) > faint || qAbs(qGreen(one) - qGreen(other)) > faint ||
               qAbs(qBlue(one) - qBlue(other)) > faint;
    }
};

TEST(TextInk, IsWrappedAtTheDrawnWidth) {
    platform::TextLabel text(nullptr);
    text.setContent({.text = "WWWWWWWW WWWWWWWW"}, platform::Color::primary);
    text.resize(text.sizeHint().width() * 2 / 3, 2 * text.sizeHint().height());  // Without asking for the height.
    const QImage image = text.grab().toImage();
    const QRgb ground = image.pixel(0, 0);
    bool second = false;
    for (int y = image.height() / 2; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) second = second || image.pixel(x, y) != ground;
    }
    EXPECT_TRUE(second) << "the second word should be on a line of its own";
}

TEST_F(WindowInk, TheSpinnerTurns) {
    bringAbout("detecting");
    const QRect place = placeOf(button("Detecting..."));
    const QImage before = picture().copy(place);
    EXPECT_TRUE(QTest::qWaitFor([&] { return window_.grab().toImage().copy(place) != before; }, 30'000));
}

// The blink time belongs to the application, so a field that changes it would change the caret of every later window.
TEST_F(WindowInk, TheFieldLeavesTheApplicationsCaretBlinking) {
    const QStyleHints& hints = *QGuiApplication::styleHints();
    const int flashTime = hints.cursorFlashTime();
    ASSERT_GT(flashTime, 0);
    field()->setFocus();
    QTest::keyClick(field(), Qt::Key_X);
    // Lets any timer of the field run out.
    for (int timer = 1; timer < 1000; ++timer) {
        QTimerEvent runsOut(timer);
        QCoreApplication::sendEvent(field(), &runsOut);
    }
    EXPECT_EQ(hints.cursorFlashTime(), flashTime);
}

// The first strong character decides. Lines then begin at the right, and a short last line ends before the left edge.
TEST_F(WindowInk, AValueInARightToLeftScriptBeginsAtTheRight) {
    QString words;
    for (int word = 0; word < 14; ++word) words += QStringLiteral("מעבד ");
    show(record(words.trimmed().toStdString()));
    const QWidget* value = label(words.trimmed().toStdString());
    ASSERT_NE(value, nullptr);
    const QRect place = placeOf(value);
    const int lineHeight = value->fontMetrics().height();
    ASSERT_GT(place.height(), lineHeight) << "it should take two lines";
    const QRect lastLine = inkIn(place.adjusted(0, place.height() - lineHeight, 0, 0));
    EXPECT_LT(place.right() - lastLine.right(), 6);
    EXPECT_GT(lastLine.left() - place.left(), 20);
}

TEST_F(WindowInk, AShortValueInARightToLeftScriptIsVisible) {
    show(record("מעבד"));
    EXPECT_FALSE(inkIn(placeOf(label("מעבד"))).isEmpty());
}

TEST_F(WindowInk, TheFocusIsVisibleInLightAndDark) {
    show(recordOfLength(1'000));
    for (const Appearance appearance : {Appearance::light, Appearance::dark}) {
        QApplication::setPalette(paletteOf(appearance));
        for (QWidget* each : {static_cast<QWidget*>(field()), static_cast<QWidget*>(button("Detect Hardware")),
                              static_cast<QWidget*>(list()), static_cast<QWidget*>(button("Send to Website"))}) {
            window_.setFocus();
            const QImage without = picture();
            each->setFocus(Qt::TabFocusReason);
            const QImage with = picture();
            int changed = 0;
            for (int x = 0; x < with.width(); ++x) {
                for (int y = 0; y < with.height(); ++y) changed += isFar(with.pixel(x, y), without.pixel(x, y)) ? 1 : 0;
            }
            EXPECT_GT(changed, each->width()) << each->metaObject()->className();
        }
    }
    QApplication::setPalette(paletteOf(Appearance::light));
}

class WindowInkAtTextSize : public WindowInk, public testing::WithParamInterface<int> {};

TEST_P(WindowInkAtTextSize, TextsGrowWithTheSystemsFontAndStayVisible) {
    bringAbout("detected");
    const int usual = label("Website URL:")->height();
    QApplication::setFont(fixedFont(GetParam()));
    settle();
    EXPECT_GT(label("Website URL:")->height(), usual);
    EXPECT_GE(field()->height(), field()->fontMetrics().height());
    for (const char* name : {"Detect Hardware", "Send to Website"}) {
        EXPECT_TRUE(window_.rect().contains(placeOf(button(name)))) << name;
    }
    EXPECT_GE(list()->height(), label("OS:")->height());
    for (const char* text : {"Detect Hardware", "Send to Website", "Hardware detected successfully!", "OS:"}) {
        EXPECT_GE(label(text)->height(), label(text)->fontMetrics().height()) << text;
    }
    QApplication::setFont(fixedFont());
    settle();
    EXPECT_EQ(label("Website URL:")->height(), usual);
}

INSTANTIATE_TEST_SUITE_P(FontsOf, WindowInkAtTextSize, testing::Values(15, 18, 30));

}  // namespace
}  // namespace window_test
