// For programs without a window: nobody to tell that the state has changed.
#include "platform/ui.h"

void platform::stateChanged() {}
