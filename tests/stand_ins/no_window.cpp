// The window that programs without one have: nobody to tell that the state has changed.
#include "platform/ui.h"

void platform::stateChanged() {}
