// Prints the current date in the pattern given.
#include "platform/date.h"

#include <cstdio>

int main(int, char** argv) { std::printf("%s\n", platform::currentDate(argv[1]).c_str()); }
