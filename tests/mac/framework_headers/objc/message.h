// As in the SDK the function has no arguments, so that nobody calls it without the method's own.
#pragma once

#include <objc/runtime.h>

extern "C" {
void objc_msgSend();
}
