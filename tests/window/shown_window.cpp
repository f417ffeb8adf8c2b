#include "tests/window/shown_window.h"

#include <QCoreApplication>
#include <QLabel>
#include <QTest>

namespace window_test {

using platform::Box;

namespace {

// Resets the fakes before the window uses them.
ContentView freshView() {
    fakes::reset();
    return {};
}

}  // namespace

HardwareInfo record(const std::string& processor) {
    return {"macOS", processor, "Apple M1 GPU", 16, "DDR4", 2666, 494, "SSD", "Not Applicable", 4};
}

HardwareInfo recordOfLength(std::size_t length) {
    const std::string text(length, 'W');
    return {text, text, text, INT64_MIN, text, 2666, INT64_MAX, text, text, INT64_MIN};
}

platform::WindowDescription sceneOf(const ContentView& view) {
    return {.name = "Hardware Detector", .width = 600, .height = 500, .content = [view] {
                return platform::WindowDescription::Content{[view] { return view.body(); }, view.changes};
            }};
}

ShownWindow::ShownWindow() : view_(freshView()), window_(sceneOf(view_)) {
    window_.show();
    window_.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&window_, 30'000));
    EXPECT_TRUE(QTest::qWaitFor([] { return !fakes::machine().datePatterns.empty(); }, 30'000)) << "never appeared";
    settle();
    fakes::waitForSession();
}

void ShownWindow::settle() {
    // Each round may post the next one: the layout, the painting, the next frame.
    for (int round = 0; round < 10; ++round) {
        QCoreApplication::sendPostedEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCoreApplication::processEvents();
    }
}

QWidget* ShownWindow::label(const std::string& text) const {
    for (QLabel* each : window_.findChildren<QLabel*>()) {
        if (each->isVisible() && each->text().toStdString() == text) return each;
    }
    return nullptr;
}

QAbstractButton* ShownWindow::button(const std::string& text) const {
    for (QAbstractButton* each : window_.findChildren<QAbstractButton*>()) {
        if (each->isVisible() && each->text().toStdString() == text) return each;
    }
    return nullptr;
}

QLineEdit* ShownWindow::field() const { return window_.findChild<QLineEdit*>(); }

QScrollArea* ShownWindow::list() const { return window_.findChild<QScrollArea*>(); }

Box* ShownWindow::bannerAround(const std::string& message) const {
    QWidget* const text = label(message);
    if (text == nullptr) return nullptr;
    QWidget* around = text->parentWidget();  // The stack of symbol and message.
    while (dynamic_cast<Box*>(around->parentWidget()) != nullptr) around = around->parentWidget();
    return dynamic_cast<Box*>(around);
}

QRect ShownWindow::placeOf(const QWidget* widget) const {
    return {widget->mapTo(&window_, QPoint(0, 0)), widget->size()};
}

void ShownWindow::finishWork() {
    fakes::runBackground();
    fakes::runMainQueue();
    settle();
}

void ShownWindow::show(const HardwareInfo& hardware) {
    view_.detectedHardware.set(hardware);
    settle();
}

void ShownWindow::banner(ContentView::StatusType type, const std::string& message) {
    view_.statusMessage.set(message);
    view_.statusType.set(type);
    settle();
}

}  // namespace window_test
