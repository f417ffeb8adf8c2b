// Compares the window with its pictures, which scripts/renew-pictures draws again.
#include <QApplication>
#include <QFile>
#include <QImage>
#include <QPixmap>
#include <tuple>

#include "platform/qt/window/widgets/box.h"
#include "platform/qt/window/widgets/spinner.h"
#include "tests/window/appearance.h"
#include "tests/window/scenes.h"

namespace window_test {
namespace {

// Of a colour's 256 levels. The faintest relevant difference, between a banner's tint and the window, is ten.
constexpr int unseen = 6;
constexpr int strayPixels = 12;  // At scale 1.

int differingPixels(const QImage& one, const QImage& other) {
    if (one.size() != other.size()) return one.width() * one.height();
    int count = 0;
    for (int y = 0; y < one.height(); ++y) {
        for (int x = 0; x < one.width(); ++x) {
            const QColor left = one.pixelColor(x, y);
            const QColor right = other.pixelColor(x, y);
            const int difference = qMax(qAbs(left.red() - right.red()),
                                        qMax(qAbs(left.green() - right.green()), qAbs(left.blue() - right.blue())));
            if (difference > unseen) ++count;
        }
    }
    return count;
}

class StoppedSpinners : public QObject {
  public:
    StoppedSpinners() { QCoreApplication::instance()->installEventFilter(this); }
    bool eventFilter(QObject* watched, QEvent* event) override {
        return event->type() == QEvent::Timer && dynamic_cast<platform::Spinner*>(watched) != nullptr;
    }
};

class WindowPictures : public ScenicWindow {
  protected:
    void SetUp() override {
        field()->clearFocus();
        settle();
    }

    void TearDown() override { QApplication::setPalette(paletteOf(Appearance::light)); }

    QImage drawn() {
        settle();
        return window_.grab().toImage();
    }

    QImage reference(const std::string& scene, Appearance appearance) const {
        return QImage(QString::fromStdString(std::string(PICTURES) + "/" + fileName(scene, appearance)));
    }

    std::string fileName(const std::string& scene, Appearance appearance) const {
        const std::string scale = std::to_string(static_cast<int>(window_.devicePixelRatioF()));
        return scene + (appearance == Appearance::light ? "_light_" : "_dark_") + scale + "x.png";
    }

    [[nodiscard]] double tolerance() const { return strayPixels * window_.devicePixelRatioF(); }

    bool isAsItShouldBe(const std::string& scene) {
        return differingPixels(drawn(), reference(scene, Appearance::light)) <= tolerance();
    }

  private:
    StoppedSpinners stoppedSpinners_;
};

class WindowPicturesOf : public WindowPictures, public testing::WithParamInterface<std::string> {};

// The desktop changes to dark while the window is open.
TEST_P(WindowPicturesOf, AreTheSameInLightAndDark) {
    bringAbout(GetParam());
    for (const Appearance appearance : {Appearance::light, Appearance::dark}) {
        QApplication::setPalette(paletteOf(appearance));
        const QImage picture = drawn();
        const std::string name = fileName(GetParam(), appearance);
        ASSERT_TRUE(picture.convertToFormat(QImage::Format_RGB888)
                        .save(QString::fromStdString(std::string(DRAWN_PICTURES) + "/" + name), "PNG", 0));
        EXPECT_LE(differingPixels(picture, reference(GetParam(), appearance)), tolerance())
            << "compare " DRAWN_PICTURES "/" << name << " with " PICTURES "/" << name;
    }
}

std::string nameOf(const testing::TestParamInfo<std::string>& scene) { return scene.param; }

INSTANTIATE_TEST_SUITE_P(States, WindowPicturesOf, testing::ValuesIn(ScenicWindow::scenes()), nameOf);

// These show that the comparison notices small mistakes.

TEST_F(WindowPictures, ShowAWrongWeight) {
    bringAbout("detected");
    QWidget* caption = label("Website URL:");
    QFont font = caption->font();
    font.setWeight(QFont::Normal);
    caption->setFont(font);
    EXPECT_FALSE(isAsItShouldBe("detected"));
}

TEST_F(WindowPictures, ShowAWrongSize) {
    bringAbout("detected");
    QWidget* subtitle = label("Detect your PC hardware for Velmora");
    QFont font = subtitle->font();
    font.setPixelSize(font.pixelSize() + 1);
    subtitle->setFont(font);
    EXPECT_FALSE(isAsItShouldBe("detected"));
}

TEST_F(WindowPictures, ShowAWrongRadiusColourOrOpacity) {
    using platform::Background;
    bringAbout("detected");
    platform::Box* banner = bannerAround("Hardware detected successfully!");
    banner->setModifier(Background{platform::Color::green, 0.1, 8});
    EXPECT_TRUE(isAsItShouldBe("detected"));
    for (const Background& wrong :
         {Background{platform::Color::green, 0.1, 5}, Background{platform::Color::blue, 0.1, 8},
          Background{platform::Color::green, 0.15, 8}}) {
        banner->setModifier(wrong);
        EXPECT_FALSE(isAsItShouldBe("detected"));
    }
}

TEST_F(WindowPictures, ShowAShiftOfTwoPixels) {
    bringAbout("launch");
    QWidget* subtitle = label("Detect your PC hardware for Velmora");
    for (const QPoint shift : {QPoint(2, 0), QPoint(0, 2)}) {
        EXPECT_TRUE(isAsItShouldBe("launch"));
        subtitle->move(subtitle->pos() + shift);
        EXPECT_GT(differingPixels(window_.grab().toImage(), reference("launch", Appearance::light)), tolerance());
        subtitle->move(subtitle->pos() - shift);
    }
}

TEST_F(WindowPictures, ShowAWrongLetter) {
    bringAbout("detected");
    show(record("Apple M1 Prq"));
    EXPECT_FALSE(isAsItShouldBe("detected"));
}

TEST_F(WindowPictures, AreTheSameWhenTheDesktopIsDarkFromTheStart) {
    QApplication::setPalette(paletteOf(Appearance::dark));
    bringAbout("detected");
    EXPECT_LE(differingPixels(drawn(), reference("detected", Appearance::dark)), tolerance());
}

}  // namespace
}  // namespace window_test
