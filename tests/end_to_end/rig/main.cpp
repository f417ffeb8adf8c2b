// The entry point of end-to-end tests that need no privilege.
#include "tests/end_to_end/rig/run_tests.h"

int main(int argc, char** argv) { return end_to_end::runTests(argc, argv); }
