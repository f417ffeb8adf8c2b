// Operating the window: pressing, moving the focus, scrolling, typing, moving and closing it.
#include <QMouseEvent>
#include <QScrollBar>
#include <QStyleHints>
#include <QTest>
#include <QTimer>
#include <QWheelEvent>
#include <algorithm>

#include "tests/window/shown_window.h"

namespace window_test {
namespace {

using fakes::machine;

using WindowOperation = ShownWindow;

// Runs the event loop until it ends. Returns the exit status, or -1 after half a minute.
int exitStatusAfter(const std::function<void()>& action) {
    QTimer::singleShot(0, qApp, action);
    QTimer limit;
    limit.setSingleShot(true);
    QObject::connect(&limit, &QTimer::timeout, qApp, [] { QCoreApplication::exit(-1); });
    limit.start(30'000);
    return QCoreApplication::exec();
}

TEST_F(WindowOperation, SpaceReturnAndEnterPressTheFocusedButton) {
    for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter}) {
        button("Detect Hardware")->setFocus();
        QTest::keyClick(button("Detect Hardware"), key);
        EXPECT_TRUE(view_.isDetecting.get());
        settle();
        finishWork();
        EXPECT_FALSE(view_.isDetecting.get());
    }
}

TEST_F(WindowOperation, AClickAnywhereOnAButtonPressesIt) {
    QTest::mouseClick(button("Detect Hardware"), Qt::LeftButton, {}, QPoint(3, 3));
    EXPECT_TRUE(view_.isDetecting.get());
}

TEST_F(WindowOperation, AClickOnAButtonsTextPressesIt) {
    const QPoint onText = placeOf(label("Detect Hardware")).center();
    QTest::mouseClick(window_.windowHandle(), Qt::LeftButton, {}, onText);
    EXPECT_TRUE(view_.isDetecting.get());
}

TEST_F(WindowOperation, AMousePressDoesNotMoveTheFocus) {
    show(recordOfLength(1'000));
    field()->setFocus();
    for (QWidget* each : {static_cast<QWidget*>(button("Detect Hardware")), list()->viewport(),
                          static_cast<QWidget*>(button("Send to Website"))}) {
        QTest::mouseClick(each, Qt::LeftButton);
        EXPECT_TRUE(field()->hasFocus());
        finishWork();
        EXPECT_TRUE(field()->hasFocus());
    }
}

TEST_F(WindowOperation, ADisabledButtonDoesNothing) {
    QAbstractButton* detect = button("Detect Hardware");
    detect->click();
    settle();
    QTest::mouseClick(detect, Qt::LeftButton);
    QTest::keyClick(detect, Qt::Key_Space);
    EXPECT_EQ(machine().background.size(), 1U);
}

// The toolkit delivers clicks that came while the program was busy without a pause between them.
TEST_F(WindowOperation, ThreeClicksInARowStartOneDetection) {
    QAbstractButton* detect = button("Detect Hardware");
    for (int click = 0; click < 3; ++click) QTest::mouseClick(detect, Qt::LeftButton);
    EXPECT_EQ(machine().background.size(), 1U);
}

TEST_F(WindowOperation, ThreeClicksInARowStartOneSubmission) {
    show(record());
    QAbstractButton* send = button("Send to Website");
    for (int click = 0; click < 3; ++click) QTest::mouseClick(send, Qt::LeftButton);
    EXPECT_EQ(machine().background.size(), 1U);
}

TEST_F(WindowOperation, APressRightAfterTheKeyThatEmptiesTheAddressSendsNothing) {
    show(record());
    QAbstractButton* send = button("Send to Website");
    field()->selectAll();
    QTest::keyClick(field(), Qt::Key_Delete);
    QTest::mouseClick(send, Qt::LeftButton);
    EXPECT_TRUE(machine().background.empty());
}

TEST_F(WindowOperation, APressRightAfterTheKeyThatFillsTheAddressSends) {
    show(record());
    field()->clear();
    settle();
    QAbstractButton* send = button("Send to Website");
    ASSERT_FALSE(send->isEnabled());
    QTest::keyClick(field(), Qt::Key_X);
    QTest::mouseClick(send, Qt::LeftButton);
    EXPECT_EQ(machine().background.size(), 1U);
}

// It is invisible, and pasted texts often begin with it.
TEST_F(WindowOperation, AByteOrderMarkBeforeTheAddressStays) {
    field()->clear();
    field()->insert(QChar(0xFEFF) + QStringLiteral("http://h"));
    settle();
    EXPECT_EQ(field()->text(), QChar(0xFEFF) + QStringLiteral("http://h"));
    EXPECT_TRUE(field()->isUndoAvailable());
}

TEST_F(WindowOperation, TabGoesFromTopToBottomAndStartsAgain) {
    show(record());
    field()->setFocus();
    std::vector<QWidget*> order;
    for (int steps = 0; steps < 4; ++steps) {
        order.push_back(window_.focusWidget());
        QTest::keyClick(window_.focusWidget(), Qt::Key_Tab);
    }
    ASSERT_GE(order.size(), 3U);
    EXPECT_EQ(order[0], field());
    EXPECT_EQ(order[1], button("Detect Hardware"));
    for (std::size_t at = 1; at < order.size(); ++at) {
        if (order[at] == field()) break;
        EXPECT_GT(placeOf(order[at]).top(), placeOf(order[at - 1]).top());
    }
    EXPECT_NE(std::find(order.begin(), order.end(), button("Send to Website")), order.end());
    EXPECT_TRUE(field()->hasFocus());
}

// Like macOS while its keyboard navigation is off.
TEST_F(WindowOperation, TabStaysInTheFieldIfTheSystemLimitsItToTextFields) {
    QStyleHints& hints = *QGuiApplication::styleHints();
    const Qt::TabFocusBehavior before = hints.tabFocusBehavior();
    hints.setTabFocusBehavior(Qt::TabFocusTextControls);
    field()->setFocus();
    QTest::keyClick(field(), Qt::Key_Tab);
    EXPECT_TRUE(field()->hasFocus());
    hints.setTabFocusBehavior(before);
}

TEST_F(WindowOperation, TheListIsScrolledByKeys) {
    show(recordOfLength(1'000));
    QScrollBar* bar = list()->verticalScrollBar();
    list()->setFocus();
    const auto valueAfter = [this, bar](Qt::Key key) {
        QTest::keyClick(list(), key);
        return bar->value();
    };
    const int line = valueAfter(Qt::Key_Down);
    EXPECT_GT(line, 0);
    EXPECT_GT(valueAfter(Qt::Key_PageDown), line);
    EXPECT_EQ(valueAfter(Qt::Key_End), bar->maximum());
    EXPECT_LT(valueAfter(Qt::Key_Up), bar->maximum());
    EXPECT_EQ(valueAfter(Qt::Key_Home), 0);
    EXPECT_EQ(valueAfter(Qt::Key_Space), bar->pageStep());
}

TEST_F(WindowOperation, TheListIsScrolledByWheelAndScrollBar) {
    show(recordOfLength(1'000));
    QScrollBar* bar = list()->verticalScrollBar();
    QWidget* inside = list()->viewport();
    const QPointF middle = QRectF(inside->rect()).center();
    QWheelEvent notch(middle, inside->mapToGlobal(middle), {}, {0, -120}, {}, {}, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(inside, &notch);
    EXPECT_GT(bar->value(), 0);

    const QRect area = placeOf(list());
    const QPoint top(area.right() - 5, area.top() + 5);
    bar->setValue(0);
    QTest::mousePress(window_.windowHandle(), Qt::LeftButton, {}, top);
    QTest::mouseMove(window_.windowHandle(), QPoint(top.x(), area.bottom()));
    EXPECT_EQ(bar->value(), bar->maximum());
    QTest::mouseRelease(window_.windowHandle(), Qt::LeftButton, {}, QPoint(top.x(), area.bottom()));
}

TEST_F(WindowOperation, AListThatNeedsNoScrollingHasNeitherFocusNorScrollBar) {
    window_.setFixedHeight(800);
    for (int round = 0; round < 2; ++round) {
        show(record());
        EXPECT_EQ(list()->focusPolicy(), Qt::NoFocus);
        EXPECT_FALSE(list()->hasFocus());
        EXPECT_FALSE(list()->verticalScrollBar()->isVisible());
        show(recordOfLength(1'000));
        EXPECT_EQ(list()->focusPolicy(), Qt::TabFocus);
        EXPECT_TRUE(list()->verticalScrollBar()->isVisible());
        list()->setFocus();
    }
}

TEST_F(WindowOperation, ClosingEndsTheApplicationWithZero) {
    EXPECT_EQ(exitStatusAfter([this] { window_.close(); }), 0);
}

TEST_F(WindowOperation, CtrlQAndCtrlWEndTheApplicationWithZeroFromTheFieldToo) {
    for (const Qt::Key key : {Qt::Key_Q, Qt::Key_W}) {
        window_.show();
        window_.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window_, 30'000));
        field()->setFocus();
        EXPECT_EQ(exitStatusAfter([this, key] { QTest::keyClick(field(), key, Qt::ControlModifier); }), 0);
    }
}

TEST_F(WindowOperation, TheBackgroundMovesTheWindow) {
    const QPoint before = window_.pos();
    const QPoint grip(300, 490);
    QTest::mousePress(&window_, Qt::LeftButton, {}, grip);
    QMouseEvent dragged(QEvent::MouseMove, grip, window_.mapToGlobal(grip + QPoint(30, 20)), Qt::NoButton,
                        Qt::LeftButton, {});
    QCoreApplication::sendEvent(&window_, &dragged);
    QTest::mouseRelease(&window_, Qt::LeftButton, {}, grip);
    EXPECT_EQ(window_.pos(), before + QPoint(30, 20));
}

TEST_F(WindowOperation, TheFieldShowsAnAddressThatTheProgramSets) {
    view_.websiteUrl.set("http://set.example/ü");
    settle();
    EXPECT_EQ(field()->text().toStdString(), "http://set.example/ü");
}

TEST_F(WindowOperation, TheFieldSupportsEditingKeys) {
    field()->setFocus();
    field()->setText("http://one.example");
    QTest::keyClick(field(), Qt::Key_Home);
    QTest::keyClick(field(), Qt::Key_Delete);
    EXPECT_EQ(field()->text(), "ttp://one.example");
    QTest::keyClick(field(), Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(field()->text(), "http://one.example");
    QTest::keyClick(field(), Qt::Key_Home, Qt::ShiftModifier);
    QTest::keyClick(field(), Qt::Key_End);
    QTest::keyClick(field(), Qt::Key_Left, Qt::ShiftModifier | Qt::ControlModifier);
    QTest::keyClick(field(), Qt::Key_X, Qt::ControlModifier);
    EXPECT_EQ(field()->text(), "http://one.");
    QTest::keyClick(field(), Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(field(), Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(field()->text(), "example");
    EXPECT_EQ(view_.websiteUrl.get(), "example");
}

}  // namespace
}  // namespace window_test
