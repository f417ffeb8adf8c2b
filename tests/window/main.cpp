// The entry point of window tests: an application without a screen.
#include <gtest/gtest.h>

#include <QApplication>

#include "platform/qt/widgets/action_button.h"
#include "platform/qt/widgets/spoken_group.h"

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    testing::InitGoogleTest(&argc, argv);
    QApplication toolkit(argc, argv);
    platform::installActionButtonAccessibility();
    platform::installSpokenGroupAccessibility();
    return RUN_ALL_TESTS();
}
