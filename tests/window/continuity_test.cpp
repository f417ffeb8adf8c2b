// What stays the same while other parts of the window change.
#include <QInputMethodEvent>
#include <QScrollBar>
#include <QTest>

#include "tests/window/shown_window.h"

namespace window_test {
namespace {

using StatusType = ContentView::StatusType;

class WindowContinuity : public ShownWindow {
  protected:
    // Shows every state of the window once, and returns to the first.
    void walkThroughTheStates() {
        button("Detect Hardware")->click();
        finishWork();
        if (button("Send to Website")->isEnabled()) button("Send to Website")->click();
        settle();
        finishWork();
        banner(StatusType::success, "another");
        banner(StatusType::info, "");
    }
};

TEST_F(WindowContinuity, TheFieldKeepsFocusCaretAndSelection) {
    const QLineEdit* before = field();
    field()->setFocus();
    field()->setText("http://typed.example");
    field()->setSelection(3, 4);

    walkThroughTheStates();

    EXPECT_EQ(field(), before);
    EXPECT_TRUE(field()->hasFocus());
    EXPECT_EQ(field()->selectionStart(), 3);
    EXPECT_EQ(field()->selectedText(), "p://");
}

TEST_F(WindowContinuity, TheFieldKeepsItsUndoHistory) {
    field()->setFocus();
    field()->selectAll();
    QTest::keyClicks(field(), "first");
    field()->selectAll();
    QTest::keyClicks(field(), "second");
    walkThroughTheStates();

    ASSERT_TRUE(field()->isUndoAvailable());
    while (field()->isUndoAvailable() && field()->text() != "first") field()->undo();
    EXPECT_EQ(field()->text(), "first");
    settle();
    EXPECT_EQ(view_.websiteUrl.get(), "first");
}

TEST_F(WindowContinuity, EveryKeystrokeIsKept) {
    field()->setFocus();
    field()->selectAll();
    QTest::keyClicks(field(), "ab");
    EXPECT_EQ(view_.websiteUrl.get(), "ab");
    QTest::keyClicks(field(), "c");
    EXPECT_EQ(view_.websiteUrl.get(), "abc");
}

TEST_F(WindowContinuity, AHalfComposedCharacterStays) {
    field()->setFocus();
    field()->clear();
    QInputMethodEvent composing(QStringLiteral("ka"), {});
    QCoreApplication::sendEvent(field(), &composing);
    walkThroughTheStates();

    QInputMethodEvent committing;
    committing.setCommitString(QStringLiteral("か"));
    QCoreApplication::sendEvent(field(), &committing);
    EXPECT_EQ(field()->text(), "か");
    EXPECT_EQ(view_.websiteUrl.get(), "か");
}

TEST_F(WindowContinuity, TypingAThousandCharactersMakesNoWidget) {
    show(record());
    const QList<QWidget*> before = window_.findChildren<QWidget*>();
    field()->setFocus();
    for (int typed = 0; typed < 1'000; ++typed) QTest::keyClick(field(), Qt::Key_X);
    settle();

    EXPECT_EQ(window_.findChildren<QWidget*>(), before);
    EXPECT_EQ(view_.websiteUrl.get().size(), std::string("https://www.velmora.example").size() + 1'000);
}

TEST_F(WindowContinuity, AnotherRecordChangesTextsAndNoWidgets) {
    show(record("one"));
    const QWidget* value = label("one");
    const QList<QWidget*> before = window_.findChildren<QWidget*>();
    show(record("two"));

    EXPECT_EQ(window_.findChildren<QWidget*>(), before);
    EXPECT_EQ(label("two"), value);
}

TEST_F(WindowContinuity, TheBannerMovesOnlyWhatIsBelowIt) {
    const QRect title = placeOf(label("🔍 Hardware Detector"));
    const QRect subtitle = placeOf(label("Detect your PC hardware for Velmora"));
    const QRect address = placeOf(field());
    const QRect detect = placeOf(button("Detect Hardware"));
    banner(StatusType::info, "message");
    const int moved = placeOf(bannerAround("message")).height() + 20;

    EXPECT_EQ(placeOf(label("🔍 Hardware Detector")), title);
    EXPECT_EQ(placeOf(label("Detect your PC hardware for Velmora")), subtitle);
    EXPECT_EQ(placeOf(field()), address.translated(0, moved));
    EXPECT_EQ(placeOf(button("Detect Hardware")), detect.translated(0, moved));

    banner(StatusType::info, "");
    EXPECT_EQ(placeOf(field()), address);
    EXPECT_EQ(placeOf(button("Detect Hardware")), detect);
}

TEST_F(WindowContinuity, ABannerThatAppearsAndDisappearsLeavesNoWidget) {
    const QList<QWidget*> before = window_.findChildren<QWidget*>();
    for (int round = 0; round < 100; ++round) {
        banner(StatusType::error, "message");
        banner(StatusType::error, "");
    }
    EXPECT_EQ(window_.findChildren<QWidget*>(), before);
}

TEST_F(WindowContinuity, TheFocusReturnsToTheDetectButtonAfterADetection) {
    button("Detect Hardware")->setFocus();
    QTest::keyClick(button("Detect Hardware"), Qt::Key_Space);
    settle();
    EXPECT_EQ(window_.focusWidget(), nullptr);
    finishWork();
    EXPECT_TRUE(button("Detect Hardware")->hasFocus());
}

TEST_F(WindowContinuity, TheFocusStaysWhereItWasMovedDuringADetection) {
    button("Detect Hardware")->setFocus();
    QTest::keyClick(button("Detect Hardware"), Qt::Key_Space);
    settle();
    field()->setFocus();
    finishWork();
    EXPECT_TRUE(field()->hasFocus());
}

TEST_F(WindowContinuity, OfTwoBusyButtonsTheOneThatLastHadTheFocusGetsItBack) {
    show(record());
    for (const char* name : {"Detect Hardware", "Send to Website"}) {
        button(name)->setFocus();
        QTest::keyClick(button(name), Qt::Key_Space);
    }
    view_.isDetecting.set(false);
    EXPECT_EQ(window_.focusWidget(), nullptr);
    view_.isSending.set(false);
    EXPECT_TRUE(button("Send to Website")->hasFocus());
}

TEST_F(WindowContinuity, AChangeIsShownAtOnce) {
    view_.detectedHardware.set(record());
    EXPECT_NE(button("Send to Website"), nullptr);
}

TEST_F(WindowContinuity, TheListKeepsItsScrollPositionWhenTheAddressChanges) {
    show(recordOfLength(1'000));
    list()->verticalScrollBar()->setValue(50);
    field()->setText("http://other.example");
    settle();
    EXPECT_EQ(list()->verticalScrollBar()->value(), 50);
}

}  // namespace
}  // namespace window_test
