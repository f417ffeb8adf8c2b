// Prints the machine's UUID, or "none".
#include "platform/device_registry.h"

#include <cstdio>

int main() { std::printf("%s\n", platform::platformUuid().value_or("none").c_str()); }
