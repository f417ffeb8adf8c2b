// Prints the machine's UUID, or "none".
#include "platform/machine_uuid.h"

#include <cstdio>

int main() { std::printf("%s\n", platform::platformUuid().value_or("none").c_str()); }
