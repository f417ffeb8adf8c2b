// The entry point of window tests: an application without a screen that looks the same on every machine.
#include <gtest/gtest.h>

#include <QApplication>
#include <QTemporaryDir>

#include "platform/qt/window/accessible_elements.h"
#include "tests/window/appearance.h"

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QTemporaryDir runtimeFolder;  // Without one, as for root, the toolkit prints a warning.
    qputenv("XDG_RUNTIME_DIR", runtimeFolder.path().toUtf8());
    testing::InitGoogleTest(&argc, argv);
    QApplication toolkit(argc, argv);
    QApplication::setFont(window_test::fixedFont());
    QApplication::setPalette(window_test::paletteOf(window_test::Appearance::light));
    platform::installAccessibleElements();
    return RUN_ALL_TESTS();
}
