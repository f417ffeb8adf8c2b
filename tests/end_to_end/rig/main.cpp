// The entry point of end-to-end tests: runs them in namespaces of their own.
#include <gtest/gtest.h>

#include <cstdio>
#include <optional>
#include <string>

#include "tests/end_to_end/rig/namespaces.h"

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    if (!GTEST_FLAG_GET(list_tests)) {
        const std::optional<std::string> failure = end_to_end::enterOwnNamespaces(end_to_end::Network::own);
        if (failure) {
            std::fprintf(stderr, "End-to-end tests need namespaces of their own, and %s.\n", failure->c_str());
            return 1;
        }
    }
    return RUN_ALL_TESTS();
}
