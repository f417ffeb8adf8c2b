// What a screen reader has of the window: which of the widgets are elements to it, and of what kind.
#pragma once

namespace platform {

// Once, before the first window.
void installAccessibleElements();

}  // namespace platform
