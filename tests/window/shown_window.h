// The main view in a real window, with fakes of the services.
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
#include "platform/qt/window/widgets/box.h"
#include "tests/fakes/fakes.h"

namespace window_test {

[[nodiscard]] HardwareInfo record(const std::string& processor = "Apple M1 Pro");

// The application's window with this view.
[[nodiscard]] platform::WindowDescription sceneOf(const ContentView& view);

// A record in which every text is that long.
[[nodiscard]] HardwareInfo recordOfLength(std::size_t length);

// Each test gets a new window, shown and painted, whose on-appear hook has run.
class ShownWindow : public testing::Test {
  protected:
    ShownWindow();

    // Handles all pending events, including the next frame.
    static void settle();

    // Null if there is none.
    [[nodiscard]] QWidget* label(const std::string& text) const;
    [[nodiscard]] QAbstractButton* button(const std::string& text) const;
    [[nodiscard]] QLineEdit* field() const;
    [[nodiscard]] QScrollArea* list() const;
    // The coloured banner around the message; null if it is not shown.
    [[nodiscard]] platform::Box* bannerAround(const std::string& message) const;

    // A widget's place in the window.
    [[nodiscard]] QRect placeOf(const QWidget* widget) const;

    // Runs the work in the background and main queues, then the next frame.
    static void finishWork();

    void show(const HardwareInfo& hardware);
    void banner(ContentView::StatusType type, const std::string& message);

    ContentView view_;
    platform::MainWindow window_;
};

}  // namespace window_test
