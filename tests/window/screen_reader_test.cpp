// The window for a screen reader: roles, names and states.
#include <QAccessible>
#include <QLabel>
#include <QTest>
#include <algorithm>

#include "platform/qt/window/widgets/spoken_group.h"
#include "tests/window/shown_window.h"

namespace window_test {
namespace {

using StatusType = ContentView::StatusType;

QAccessibleInterface* accessible(QWidget* widget) { return QAccessible::queryAccessibleInterface(widget); }

using WindowForScreenReaders = ShownWindow;

TEST_F(WindowForScreenReaders, ButtonsFieldAndTextsAreFoundPressedAndRead) {
    show(record());
    QAccessibleInterface* detect = QAccessible::queryAccessibleInterface(button("Detect Hardware"));
    ASSERT_NE(detect, nullptr);
    EXPECT_EQ(detect->role(), QAccessible::Button);
    EXPECT_EQ(detect->text(QAccessible::Name), "Detect Hardware");
    EXPECT_EQ(detect->childCount(), 0);
    ASSERT_NE(detect->actionInterface(), nullptr);
    detect->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    settle();
    EXPECT_TRUE(view_.isDetecting.get());
    EXPECT_TRUE(detect->state().disabled);
    EXPECT_FALSE(detect->actionInterface()->actionNames().contains(QAccessibleActionInterface::pressAction()));

    QAccessibleInterface* address = QAccessible::queryAccessibleInterface(field());
    ASSERT_NE(address, nullptr);
    EXPECT_EQ(address->text(QAccessible::Name), "Website URL:");
    EXPECT_TRUE(address->state().editable);
    address->setText(QAccessible::Value, "http://heard.example");
    EXPECT_EQ(view_.websiteUrl.get(), "http://heard.example");

    QAccessibleInterface* value = QAccessible::queryAccessibleInterface(label("16 GB DDR4"));
    ASSERT_NE(value, nullptr);
    EXPECT_EQ(value->text(QAccessible::Name), "16 GB DDR4");
}

TEST_F(WindowForScreenReaders, ABusyButtonHasTheBusyState) {
    QAccessibleInterface* detect = accessible(button("Detect Hardware"));
    EXPECT_FALSE(detect->state().busy);
    button("Detect Hardware")->click();
    settle();

    EXPECT_TRUE(detect->state().busy);
    EXPECT_EQ(detect->text(QAccessible::Name), "Detecting...");
    finishWork();
    EXPECT_FALSE(detect->state().busy);
}

TEST_F(WindowForScreenReaders, ABannerIsNamedByItsMessage) {
    banner(StatusType::info, "Sending hardware data...");
    QAccessibleInterface* shown = accessible(label("Sending hardware data...")->parentWidget());
    // Since Qt 6.8 it is announced instead. A screen reader would announce a notification as well.
    EXPECT_EQ(shown->role() == QAccessible::Notification, QT_VERSION < QT_VERSION_CHECK(6, 8, 0));
    EXPECT_EQ(shown->text(QAccessible::Name), "Sending hardware data...");
    banner(StatusType::error, "Error");
    EXPECT_EQ(shown->text(QAccessible::Name), "Error");
}

TEST_F(WindowForScreenReaders, ARowReadsAsOne) {
    show(record());
    for (const auto& [value, words] :
         {std::pair("Apple M1 Pro", "Processor: Apple M1 Pro"), std::pair("16 GB DDR4", "RAM: 16 GB DDR4")}) {
        ASSERT_NE(label(value), nullptr);
        QAccessibleInterface* row = accessible(label(value))->parent();
        EXPECT_EQ(row->role(), QAccessible::Grouping);
        EXPECT_EQ(row->text(QAccessible::Name), words);
    }
}

TEST_F(WindowForScreenReaders, SymbolsAndSpinnersHaveNoName) {
    banner(StatusType::error, "message");
    button("Detect Hardware")->click();
    settle();
    for (QWidget* each : window_.findChildren<QWidget*>()) {
        const bool isText = qobject_cast<QLabel*>(each) != nullptr || qobject_cast<QLineEdit*>(each) != nullptr;
        const bool isSpoken = dynamic_cast<platform::SpokenGroup*>(each) != nullptr;
        if (isText || isSpoken || qobject_cast<QAbstractButton*>(each) != nullptr || each == list()) continue;
        EXPECT_EQ(accessible(each)->text(QAccessible::Name), "") << each->metaObject()->className();
    }
}

TEST_F(WindowForScreenReaders, TheListIsAPaneNamedByItsCaptionWithOnlyItsContent) {
    show(recordOfLength(1'000));
    QAccessibleInterface* area = accessible(list());
    EXPECT_EQ(area->role(), QAccessible::Pane);
    EXPECT_EQ(area->text(QAccessible::Name), "Detected Hardware:");
    ASSERT_EQ(area->childCount(), 1);
    EXPECT_EQ(area->indexOfChild(area->child(0)), 0);
    EXPECT_EQ(area->child(0)->object(), list()->viewport());
    EXPECT_EQ(area->child(1), nullptr);
}

TEST_F(WindowForScreenReaders, TheWindowHasItsName) {
    EXPECT_EQ(accessible(&window_)->role(), QAccessible::Window);
    EXPECT_EQ(accessible(&window_)->text(QAccessible::Name), "Hardware Detector");
}

TEST_F(WindowForScreenReaders, EveryElementHasARoleANameAndAState) {
    show(record());
    banner(StatusType::error, "message");
    button("Send to Website")->click();
    settle();
    for (QWidget* each : window_.findChildren<QWidget*>()) {
        const bool speaks = qobject_cast<QLabel*>(each) != nullptr || qobject_cast<QLineEdit*>(each) != nullptr ||
                            qobject_cast<QAbstractButton*>(each) != nullptr ||
                            dynamic_cast<platform::SpokenGroup*>(each) != nullptr;
        if (!speaks || !each->isVisible()) continue;
        QAccessibleInterface* element = accessible(each);
        EXPECT_NE(element->role(), QAccessible::NoRole);
        EXPECT_NE(element->role(), QAccessible::Client) << "a role that says nothing";
        EXPECT_NE(element->text(QAccessible::Name), "") << each->metaObject()->className();
        EXPECT_FALSE(element->state().invisible);
        EXPECT_EQ(element->state().disabled, !each->isEnabled());
    }
}

TEST_F(WindowForScreenReaders, EveryTextIsInTheTree) {
    show(record());
    banner(StatusType::success, "Hardware detected successfully!");
    std::vector<std::string> names;
    const std::function<void(QAccessibleInterface*)> collect = [&](QAccessibleInterface* element) {
        if (element->role() == QAccessible::StaticText || element->role() == QAccessible::Button) {
            names.push_back(element->text(QAccessible::Name).toStdString());
        }
        for (int child = 0; child < element->childCount(); ++child) collect(element->child(child));
    };
    collect(accessible(&window_));
    for (const char* text : {"🔍 Hardware Detector", "Detect your PC hardware for Velmora",
                             "Website URL:", "Hardware detected successfully!", "Detect Hardware",
                             "Detected Hardware:", "OS:", "macOS", "Storage:", "494 GB SSD", "Send to Website"}) {
        EXPECT_EQ(std::count(names.begin(), names.end(), text), 1) << text;
    }
}

}  // namespace
}  // namespace window_test
