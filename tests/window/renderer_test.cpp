// Renders descriptions that the main view does not use.
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QLabel>
#include <QScrollArea>
#include <QScrollBar>
#include <QTest>

#include "platform/qt/window/main_window.h"
#include "platform/qt/window/widgets/colors_and_fonts.h"

using namespace platform;

namespace {

// A window that shows the description that the test gives it.
class Renderer : public testing::Test {
  protected:
    void show(View view) {
        view_ = std::move(view);
        if (window_ == nullptr) {
            window_ = std::make_unique<MainWindow>(
                WindowDescription{.name = "Test", .width = 600, .height = 500, .content = [this] {
                                      return WindowDescription::Content{[this] { return view_; }, changes_};
                                  }});
            window_->show();
        } else {
            changes_.notify();
        }
        for (int round = 0; round < 10; ++round) {
            QCoreApplication::sendPostedEvents();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            QCoreApplication::processEvents();
        }
    }

    // The label's place in the window; an invalid rectangle if there is not exactly one.
    [[nodiscard]] QRect place(const QString& text) const {
        QRect found;
        for (const QLabel* label : window_->findChildren<QLabel*>()) {
            if (!label->isVisible() || label->text() != text) continue;
            if (found.isValid()) return {};
            found = {label->mapTo(window_.get(), QPoint(0, 0)), label->size()};
        }
        return found;
    }

    // The bounding rectangle of all pixels of that colour.
    [[nodiscard]] QRect coloured(const QColor& colour) const {
        const QImage picture = window_->grab().toImage();
        QRect found;
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x) {
                if (picture.pixelColor(x, y) == colour) found |= QRect(x, y, 1, 1);
            }
        }
        return found;
    }

    [[nodiscard]] QColor red() const { return toolkitColor(Color::red, window_->palette()); }

    ChangeNotifier changes_;
    View view_ = View(Nothing{});
    std::unique_ptr<MainWindow> window_;
};

View text(const std::string& words) { return View(Text{.text = words}); }

View column(Alignment alignment, int spacing, const std::vector<std::string>& texts) {
    std::vector<View> children;
    for (const std::string& each : texts) children.push_back(text(each));
    children.push_back(spacer());
    return vstack(alignment, spacing, std::move(children));
}

View centred(View view) { return vstack(Alignment::center, 0, {std::move(view), spacer()}); }

// Receives the paint events of a widget.
class PaintCounter : public QObject {
  public:
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Paint) ++count;
        return false;
    }
    int count = 0;
};

TEST_F(Renderer, AChangedSymbolIsPaintedAgain) {
    show(View(Symbol{SymbolName::infoCircleFill, Color::blue}));
    PaintCounter paints;
    window_->findChild<QWidget*>()->installEventFilter(&paints);
    show(View(Symbol{SymbolName::xmarkCircleFill, Color::red}));
    EXPECT_EQ(paints.count, 1);
}

TEST_F(Renderer, AStretchingElementGetsTheRestOfItsRow) {
    show(centred(hstack({text("short").stretch(Alignment::leading), text("other")})));
    EXPECT_EQ(place("short").left(), 0);
    EXPECT_EQ(place("other").right(), 599);
    EXPECT_LT(place("other").width(), 100);
}

TEST_F(Renderer, AStackMayHaveMoreAndFewerChildrenThanBefore) {
    show(column(Alignment::leading, 10, {"one", "two"}));
    show(column(Alignment::leading, 10, {"one", "two", "three", "four"}));
    EXPECT_EQ(place("two").top(), place("one").bottom() + 1 + 10);
    EXPECT_EQ(place("four").top(), place("three").bottom() + 1 + 10);

    show(column(Alignment::leading, 10, {"four"}));
    EXPECT_TRUE(place("four").isValid());
    EXPECT_EQ(place("four").top(), 0);
    EXPECT_FALSE(place("one").isValid());
    EXPECT_FALSE(place("three").isValid());

    show(column(Alignment::leading, 10, {}));
    EXPECT_FALSE(place("four").isValid());
}

TEST_F(Renderer, AStackInsideAnotherMayGrow) {
    show(centred(column(Alignment::leading, 10, {"one"})));
    show(centred(column(Alignment::leading, 10, {"one", "two"})));
    EXPECT_EQ(place("two").top(), place("one").bottom() + 1 + 10);
}

TEST_F(Renderer, ASpacingMayChange) {
    show(column(Alignment::leading, 10, {"one", "two"}));
    show(column(Alignment::leading, 30, {"one", "two"}));
    EXPECT_EQ(place("two").top(), place("one").bottom() + 1 + 30);
}

TEST_F(Renderer, AnAlignmentMayChange) {
    show(column(Alignment::leading, 10, {"one"}));
    EXPECT_EQ(place("one").left(), 0);
    show(column(Alignment::center, 10, {"one"}));
    EXPECT_NEAR(place("one").center().x(), 299, 1);
}

TEST_F(Renderer, AFramesWidthAndAlignmentMayChange) {
    const auto framed = [](int width, Alignment alignment) {
        return hstack({text("in").frame(width, alignment), text("behind"), spacer()});
    };
    show(framed(100, Alignment::leading));
    EXPECT_EQ(place("behind").left(), 100 + defaultSpacing);
    show(framed(200, Alignment::leading));
    EXPECT_EQ(place("behind").left(), 200 + defaultSpacing);
    EXPECT_EQ(place("in").left(), 0);
    show(framed(200, Alignment::center));
    EXPECT_NEAR(place("in").center().x(), 99, 1);
}

TEST_F(Renderer, AStretchsAlignmentMayChange) {
    show(centred(text("in").stretch(Alignment::leading)));
    EXPECT_EQ(place("in").left(), 0);
    show(centred(text("in").stretch(Alignment::center)));
    EXPECT_NEAR(place("in").center().x(), 299, 1);
}

TEST_F(Renderer, AButtonsLabelMayBecomeAnotherElement) {
    const auto button = [](View label) { return centred(View(Button{[] {}, {std::move(label)}})); };
    show(button(text("one")));
    show(button(hstack({text("one"), text("two")})));
    EXPECT_EQ(place("two").left(), place("one").right() + 1 + defaultSpacing);
}

TEST_F(Renderer, AScrollAreasContentMayBecomeAnotherElement) {
    const auto area = [](View content) { return centred(View(ScrollArea{200, "area", {std::move(content)}})); };
    show(area(text("one")));
    show(area(vstack(Alignment::leading, 10, {text("one"), text("two")})));
    EXPECT_EQ(place("two").top(), place("one").bottom() + 1 + 10);
}

TEST_F(Renderer, AnOnAppearHookMayChangeTheView) {
    show(text("before").onAppear([this, after = std::string(100, 'x')] {
        view_ = text(after);
        changes_.notify();
        view_ = text(after);  // The hook still exists.
    }));
    EXPECT_TRUE(QTest::qWaitFor([this] { return place(QString(100, 'x')).isValid(); }, 30'000));
}

TEST_F(Renderer, AScrollAreaScrollsOnlyVertically) {
    show(centred(View(ScrollArea{200, "area", {text("in").frame(900, Alignment::leading)}})));
    const auto* area = window_->findChild<QScrollArea*>();
    EXPECT_FALSE(area->horizontalScrollBar()->isVisible());
    EXPECT_EQ(area->viewport()->height(), area->height());
}

TEST_F(Renderer, TheOutermostElementMayBecomeAnother) {
    show(column(Alignment::leading, 10, {"one"}));
    show(hstack({text("one"), text("two"), spacer()}));
    EXPECT_EQ(place("two").left(), place("one").right() + 1 + defaultSpacing);
    show(text("three"));
    EXPECT_TRUE(place("three").isValid());
    EXPECT_FALSE(place("one").isValid());
}

TEST_F(Renderer, ASlotMayHoldASpacerAndAnElementInTurn) {
    const auto row = [](View middle) { return centred(hstack({text("first"), std::move(middle), text("last")})); };
    const auto stack = [](View middle) {
        return vstack(Alignment::leading, 5, {text("first"), std::move(middle), text("last")});
    };
    for (int round = 0; round < 2; ++round) {
        show(row(spacer()));
        EXPECT_EQ(place("last").right(), 599);
        show(row(text("middle")));
        EXPECT_GT(place("first").left(), 0);
        EXPECT_EQ(place("last").left(), place("middle").right() + 1 + defaultSpacing);
        show(row(View(Nothing{})));
        EXPECT_EQ(place("last").left(), place("first").right() + 1 + defaultSpacing);
    }
    for (int round = 0; round < 2; ++round) {
        show(stack(spacer()));
        EXPECT_EQ(place("last").bottom(), 499);
        const int gap = place("last").top() - place("first").bottom();
        show(stack(text("middle")));
        EXPECT_EQ(place("middle").top() - place("first").bottom(), place("last").top() - place("middle").bottom());
        EXPECT_LT(place("middle").top() - place("first").bottom(), gap / 2);
    }
}

TEST_F(Renderer, APaddingOutsideOfAFrameAddsToItsWidth) {
    show(hstack({text("in").frame(120, Alignment::leading).padding(Edges::all, 10), text("behind"), spacer()}));
    EXPECT_EQ(place("in").left(), 10);
    EXPECT_EQ(place("behind").left(), 10 + 120 + 10 + defaultSpacing);
}

TEST_F(Renderer, APaddingInsideOfAFrameIsPartOfItsWidth) {
    show(hstack({text("in").padding(Edges::all, 10).frame(120, Alignment::leading), text("behind"), spacer()}));
    EXPECT_EQ(place("in").left(), 10);
    EXPECT_EQ(place("behind").left(), 120 + defaultSpacing);
}

TEST_F(Renderer, AFrameInsideOfAnotherIsPlacedInIt) {
    show(hstack({text("in").frame(50, Alignment::leading).frame(150, Alignment::center), text("behind"), spacer()}));
    EXPECT_EQ(place("in").left(), 50);
    EXPECT_EQ(place("behind").left(), 150 + defaultSpacing);
}

TEST_F(Renderer, ABackgroundFillsOnlyTheModifiersBeforeIt) {
    show(centred(text("").frame(100, Alignment::leading).padding(Edges::horizontal, 10).background(Color::red, 1, 0)));
    EXPECT_EQ(coloured(red()).width(), 120);
    show(centred(text("").frame(100, Alignment::leading).background(Color::red, 1, 0).padding(Edges::horizontal, 10)));
    EXPECT_EQ(coloured(red()).width(), 100);
    show(centred(text("").frame(100, Alignment::leading).background(Color::red, 1, 0).stretch()));
    EXPECT_EQ(coloured(red()).width(), 100);
    show(centred(text("").frame(100, Alignment::leading).stretch().background(Color::red, 1, 0)));
    EXPECT_EQ(coloured(red()).width(), 600);
    show(centred(text("").frame(100, Alignment::leading).background(Color::red, 1, 0).frame(200, Alignment::center)));
    EXPECT_EQ(coloured(red()).width(), 100);
}

TEST_F(Renderer, ACornerRadiusRoundsTheBackground) {
    const auto square = [](int cornerRadius) {
        return centred(text("").frame(100, Alignment::leading).padding().background(Color::red, 1, cornerRadius));
    };
    show(square(0));
    const QPoint corner = coloured(red()).topLeft();
    EXPECT_EQ(window_->grab().toImage().pixelColor(corner), red());
    show(square(8));
    EXPECT_NE(window_->grab().toImage().pixelColor(corner), red());
}

}  // namespace
