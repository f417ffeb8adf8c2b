// What windows are like on this system's desktop, where the toolkit leaves that to the program: one back end a system.
// Main thread only.
#pragma once

class QWidget;

namespace platform::desktopConventions {

// Before a window is first shown: takes its title bar away, and gives it the keys that close it where no menu has them.
void dress(QWidget& window);

// Once, before the first window opens: the menus that belong to the application, where they do.
void addMenus();

// Whether the application ends when its window is closed. Else it goes on, and its window opens again when a person
// comes back to it.
[[nodiscard]] bool applicationEndsWithItsWindow();

}  // namespace platform::desktopConventions
