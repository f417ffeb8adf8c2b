// The window's elements for screen readers, in place of the toolkit's own.
#pragma once

namespace platform {

// Call once, before the first window is made.
void installAccessibleElements();

}  // namespace platform
