// The window on macOS: title bar, menus, and reopening from the Dock.
#include "platform/qt/window/desktop_conventions.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QScrollBar>
#include <QTest>
#include <algorithm>
#include <memory>

#include "app/hardware_detector_app.h"
#include "app/website_base_url.h"
#include "platform/mac/menu_bar.h"
#include "platform/qt/window/widgets/flexible_scroll_area.h"
#include "platform/qt/window/window_opener.h"
#include "tests/fakes/fakes.h"
#include "tests/mac/fakes/objective_c.h"

namespace {

using recordingFakes::objectiveC;
using Lines = std::vector<std::string>;

class MacWindow : public testing::Test {
  protected:
    MacWindow() {
        fakes::reset();
        objectiveC() = {};
    }
};

TEST_F(MacWindow, ItsTitleBarIsHidden) {
    QWidget window(nullptr, Qt::Window);
    platform::desktopConventions::dress(window);
    EXPECT_EQ(objectiveC().messages,
              (Lines{"view window", "NSWindow setTitleVisibility: 1", "NSWindow setTitlebarAppearsTransparent: 1",
                     "NSWindow setTitlebarSeparatorStyle: 1"}));
}

TEST_F(MacWindow, OlderSystemsHaveNoSeparatorToHide) {
    objectiveC().unknownSelectors = {"setTitlebarSeparatorStyle:"};
    QWidget window(nullptr, Qt::Window);
    platform::desktopConventions::dress(window);
    EXPECT_EQ(objectiveC().messages.back(), "NSWindow setTitlebarAppearsTransparent: 1");
}

TEST_F(MacWindow, ItsThreeButtonsStay) {
    QWidget window(nullptr, Qt::Window);
    const Qt::WindowFlags before = window.windowFlags();
    platform::desktopConventions::dress(window);
    EXPECT_EQ(window.windowFlags(), before);
    EXPECT_FALSE(window.windowFlags().testFlag(Qt::FramelessWindowHint));
}

TEST_F(MacWindow, ItsFirstFrameIsOnScreenWhenItAppears) {
    std::optional<Lines> messages;  // The messages sent until the window appears.
    const auto appearing = [&] {
        return platform::View(platform::Nothing{}).onAppear([&] { messages = objectiveC().messages; });
    };
    platform::MainWindow window({.name = "Test", .width = 600, .height = 500, .content = [&] {
                                     return platform::WindowDescription::Content{appearing, {}};
                                 }});
    window.show();
    ASSERT_TRUE(QTest::qWaitFor([&] { return messages.has_value(); }, 30'000));
    EXPECT_EQ(Lines(messages->end() - 2, messages->end()), (Lines{"view displayIfNeeded", "CATransaction flush"}));
}

TEST_F(MacWindow, ItsListHasThePlatformsScrollBar) {
    const platform::FlexibleScrollArea list;
    EXPECT_EQ(list.verticalScrollBarPolicy(), Qt::ScrollBarAsNeeded);
    EXPECT_NE(list.verticalScrollBar()->parent(), &list);
    EXPECT_TRUE(list.verticalScrollBar()->styleSheet().isEmpty());
}

// The application with its window and menus.
class MacApplication : public MacWindow {
  protected:
    MacApplication() { open(); }

    void open() {
        onScreen_.open();
        ASSERT_TRUE(QTest::qWaitFor([this] { return reportsOfUse() == opened_ + 1; }, 30'000)) << "never appeared";
        ++opened_;
        fakes::waitForSession();
        QApplication::processEvents();
    }

    // A click in the Dock activates the program, even if it is active already.
    static void pressInTheDock() {
        emit qApp->applicationStateChanged(Qt::ApplicationActive);
        QApplication::processEvents();
    }

    static int reportsOfUse() {
        const auto& requests = fakes::machine().requests;
        return static_cast<int>(std::count_if(requests.begin(), requests.end(), [](const auto& request) {
            return request.url.absoluteString().find("track-usage") != std::string::npos;
        }));
    }

    static std::vector<platform::MainWindow*> windows() {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        std::vector<platform::MainWindow*> found;
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            if (auto* window = dynamic_cast<platform::MainWindow*>(widget)) found.push_back(window);
        }
        return found;
    }

    static platform::MainWindow* window() { return windows().at(0); }
    static QLineEdit* field() { return window()->findChild<QLineEdit*>(); }

    // Chooses an item of any menu by its text.
    void choose(const QString& text) const {
        for (const QAction* menu : menuBar_->actions()) {
            for (QAction* item : menu->menu()->actions()) {
                if (item->text() == text) return item->trigger();
            }
        }
        ADD_FAILURE() << "no item " << text.toStdString();
    }

    platform::WindowOpener onScreen_{HardwareDetectorApp().body()};
    std::unique_ptr<QMenuBar> menuBar_{platform::makeMenuBar()};
    int opened_ = 0;
};

TEST_F(MacApplication, KeepsRunningWithoutItsWindow) {
    window()->close();
    QApplication::processEvents();
    EXPECT_TRUE(windows().empty());
    EXPECT_FALSE(QApplication::quitOnLastWindowClosed());
}

TEST_F(MacApplication, AClickInTheDockOpensTheWindowInItsInitialState) {
    field()->setText("http://typed.example");
    window()->close();
    EXPECT_TRUE(windows().empty());
    pressInTheDock();
    ASSERT_EQ(windows().size(), 1U);
    EXPECT_TRUE(window()->isVisible());
    EXPECT_EQ(field()->text().toStdString(), websiteBaseUrl());
}

TEST_F(MacApplication, TheReopenedWindowReportsAgain) {
    window()->close();
    EXPECT_TRUE(windows().empty());
    pressInTheDock();
    EXPECT_TRUE(QTest::qWaitFor([] { return reportsOfUse() == 2; }, 30'000));
    fakes::waitForSession();
}

TEST_F(MacApplication, AClickInTheDockOpensNoSecondWindow) {
    const platform::MainWindow* open = window();
    pressInTheDock();
    window()->showMinimized();
    pressInTheDock();
    EXPECT_EQ(windows(), (std::vector<platform::MainWindow*>{const_cast<platform::MainWindow*>(open)}));
}

TEST_F(MacApplication, HasTheStandardMenus) {
    Lines items;
    for (const QAction* menu : menuBar_->actions()) {
        items.push_back(menu->text().toStdString());
        for (const QAction* item : menu->menu()->actions()) {
            items.push_back(
                item->isSeparator() ? "-" : "  " + (item->text() + " " + item->shortcut().toString()).toStdString());
        }
    }
    EXPECT_EQ(items, (Lines{"Edit", "  About Hardware Detector ", "  Undo Ctrl+Z", "  Redo Ctrl+Shift+Z", "-",
                            "  Cut Ctrl+X", "  Copy Ctrl+C", "  Paste Ctrl+V", "  Select All Ctrl+A", "Window",
                            "  Close Ctrl+W", "  Minimize Ctrl+M"}));
}

TEST_F(MacApplication, AboutIsInTheApplicationMenuAndShowsTheSystemsPanel) {
    QAction* about = menuBar_->actions().at(0)->menu()->actions().at(0);
    EXPECT_EQ(about->menuRole(), QAction::AboutRole);
    objectiveC().messages.clear();
    about->trigger();
    EXPECT_EQ(objectiveC().messages,
              (Lines{"NSApplication sharedApplication", "NSApp orderFrontStandardAboutPanel: 0"}));
}

TEST_F(MacApplication, TheEditMenuWorksInTheField) {
    field()->setFocus();
    field()->setText("http://one.example");
    choose("Select All");
    EXPECT_EQ(field()->selectedText(), "http://one.example");
    choose("Cut");
    EXPECT_EQ(field()->text(), "");
    choose("Undo");
    EXPECT_EQ(field()->text(), "http://one.example");
    choose("Redo");
    EXPECT_EQ(field()->text(), "");
    choose("Paste");
    choose("Paste");
    EXPECT_EQ(field()->text(), "http://one.examplehttp://one.example");
}

TEST_F(MacApplication, TheEditMenuCopiesAValueOfTheList) {
    auto* text = new QLabel("selected", window());
    text->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    text->show();
    text->setFocus();
    choose("Select All");
    choose("Copy");
    EXPECT_EQ(QApplication::clipboard()->text(), "selected");
}

TEST_F(MacApplication, TheWindowMenuMinimizesAndCloses) {
    choose("Minimize");
    EXPECT_TRUE(window()->isMinimized());
    window()->showNormal();
    window()->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window(), 30'000));
    choose("Close");
    EXPECT_TRUE(windows().empty());
}

TEST_F(MacApplication, TheMenusDoNothingWithoutAWindow) {
    window()->close();
    EXPECT_TRUE(windows().empty());
    for (const char* item : {"Undo", "Copy", "Paste", "Close", "Minimize"}) choose(item);
    EXPECT_TRUE(windows().empty());
}

}  // namespace
