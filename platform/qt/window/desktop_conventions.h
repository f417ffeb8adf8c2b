// Conventions of the desktop that the toolkit leaves to the program. One back end for each system; main thread only.
#pragma once

class QWidget;

namespace platform::desktopConventions {

// Call before a window is first shown. Hides its title bar, and sets the keys that close it where no menu has them.
void dress(QWidget& window);

// Call when a window has been painted and the main thread may block next: the desktop may not show the frame before the
// thread is free again.
void putOnScreen(QWidget& window);

// Call once, before the first window opens. Adds the application's menus where the desktop has a menu bar.
void addMenus();

// Whether lists keep the platform's scroll bars instead of slim ones over the content.
[[nodiscard]] bool usesThePlatformsScrollBars();

// Whether the application ends when its window is closed. Otherwise activating it opens the window again.
[[nodiscard]] bool applicationEndsWithItsWindow();

}  // namespace platform::desktopConventions
