// The standard menus of a macOS application. Hide, Services and Quit in the application's own menu are the toolkit's.
#pragma once

class QMenuBar;

namespace platform {

// A menu bar for all windows and for none. Its items always can be chosen: an item that is dim takes its keys with it.
[[nodiscard]] QMenuBar* makeMenuBar();

}  // namespace platform
