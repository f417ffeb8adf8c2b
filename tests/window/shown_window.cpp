#include "tests/window/shown_window.h"

#include <QCoreApplication>
#include <QLabel>
#include <QTest>
#include <algorithm>
#include <array>

#include "platform/qt/widgets/box.h"

namespace window_test {

namespace {

// The fakes start afresh before the window that uses them.
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

ShownWindow::ShownWindow()
    : view_(freshView()),
      window_({.name = "Hardware Detector", .width = 600, .height = 500, .content = [view = view_] {
                   return platform::WindowGroup::Content{[view] { return view.body(); }, view.changes};
               }}) {
    window_.show();
    window_.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&window_, 30'000));
    EXPECT_TRUE(QTest::qWaitFor([] { return !fakes::machine().datePatterns.empty(); }, 30'000)) << "never appeared";
    settle();
    fakes::waitForSession();
}

void ShownWindow::settle() {
    // Each round may post the next: a change, its rendering, the layout, the painting.
    for (int round = 0; round < 10; ++round) {
        QCoreApplication::sendPostedEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCoreApplication::processEvents();
    }
}

std::vector<std::string> ShownWindow::texts() const {
    struct Shown {
        std::array<int, 3> order;
        std::string text;
    };
    std::vector<Shown> all;
    const auto add = [this, &all](const QWidget* widget, const QString& text) {
        if (!widget->isVisible()) return;
        const QPoint own = placeOf(widget).center();
        // What is scrolled out of the list still comes before what stands below the list.
        const bool listed = list() != nullptr && list()->isAncestorOf(widget);
        const int top = listed ? placeOf(list()).top() : own.y();
        all.push_back({{top, own.y(), own.x()}, text.toStdString()});
    };
    for (const QLabel* each : window_.findChildren<QLabel*>()) add(each, each->text());
    add(field(), field()->text());
    std::stable_sort(all.begin(), all.end(),
                     [](const Shown& one, const Shown& other) { return one.order < other.order; });
    std::vector<std::string> texts;
    for (const Shown& each : all) texts.push_back(each.text);
    return texts;
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

QWidget* ShownWindow::bannerAround(const std::string& message) const {
    QWidget* around = label(message);
    while (around != nullptr && dynamic_cast<platform::Box*>(around) == nullptr) around = around->parentWidget();
    return around;
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
