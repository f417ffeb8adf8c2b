// Declared without arguments, like in the SDK, so that each call must cast it to the method's type.
#pragma once

#include <objc/runtime.h>

extern "C" {
void objc_msgSend();
}
