// The entry point of end-to-end tests that need mounts of their own.
#include "tests/end_to_end/rig/mount_namespace.h"

#include "tests/end_to_end/rig/run_tests.h"

int main(int argc, char** argv) {
    end_to_end::enterMountNamespace();
    return end_to_end::runTests(argc, argv);
}
