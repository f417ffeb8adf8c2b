// Ends a fuzz target with a message.
#pragma once

#include <cstdio>
#include <cstdlib>

namespace fuzz {

inline void require(bool condition, const char* complaint) {
    if (condition) return;
    std::fprintf(stderr, "fuzz target: %s\n", complaint);
    std::abort();
}

}  // namespace fuzz
