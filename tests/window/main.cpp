// The entry point of window tests: an application without a screen, that looks the same on every machine.
#include <gtest/gtest.h>

#include <QApplication>

#include "platform/qt/widgets/action_button.h"
#include "platform/qt/widgets/spoken_group.h"
#include "tests/window/appearance.h"

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    testing::InitGoogleTest(&argc, argv);
    QApplication toolkit(argc, argv);
    QApplication::setFont(window_test::fixedFont());
    QApplication::setPalette(window_test::paletteOf(window_test::Appearance::light));
    platform::installActionButtonAccessibility();
    platform::installSpokenGroupAccessibility();
    return RUN_ALL_TESTS();
}
