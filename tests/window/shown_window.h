// The main view in a real window, with fakes behind it.
#pragma once

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QLineEdit>
#include <QScrollArea>
#include <QString>
#include <memory>
#include <string>
#include <vector>

#include "app/content_view.h"
#include "platform/qt/window/main_window.h"
#include "tests/fakes/fakes.h"

namespace window_test {

[[nodiscard]] HardwareInfo record(const std::string& processor = "Apple M1 Pro");

// The application's window, with this view in it.
[[nodiscard]] platform::WindowDescription sceneOf(const ContentView& view);

// A record whose every text is that long.
[[nodiscard]] HardwareInfo recordOfLength(std::size_t length);

// A window of its own for each test, shown and painted, its on-appear hook done.
class ShownWindow : public testing::Test {
  protected:
    ShownWindow();

    // Carries out everything that is due: the next frame, and what is posted to it.
    static void settle();

    // Null while there is none.
    [[nodiscard]] QWidget* label(const std::string& text) const;
    [[nodiscard]] QAbstractButton* button(const std::string& text) const;
    [[nodiscard]] QLineEdit* field() const;
    [[nodiscard]] QScrollArea* list() const;
    // The nearest widget around both that has the banner's look: the parent of message and symbol and all around them.
    [[nodiscard]] QWidget* bannerAround(const std::string& message) const;

    // Where a widget stands in the window.
    [[nodiscard]] QRect placeOf(const QWidget* widget) const;

    // What the background and main queues hold, and then the next frame.
    static void finishWork();

    void show(const HardwareInfo& hardware);
    void banner(ContentView::StatusType type, const std::string& message);

    ContentView view_;
    platform::MainWindow window_;
};

}  // namespace window_test
