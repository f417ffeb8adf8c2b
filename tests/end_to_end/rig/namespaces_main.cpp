// The entry point of end-to-end tests that need mounts or a network of their own.
#include "tests/end_to_end/rig/namespaces.h"

#include "tests/end_to_end/rig/run_tests.h"

int main(int argc, char** argv) {
    end_to_end::enterOwnNamespaces();
    return end_to_end::runTests(argc, argv);
}
