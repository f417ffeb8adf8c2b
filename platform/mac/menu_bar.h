// The standard menus of a macOS application. Hide, Services and Quit in the application's own menu are the toolkit's.
#pragma once

class QMenuBar;

namespace platform {

// A menu bar for all windows. Its items are never disabled, because a disabled item would disable its keys.
[[nodiscard]] QMenuBar* makeMenuBar();

}  // namespace platform
