#include <gtest/gtest.h>

#include "tests/support/shell.h"

namespace {

TEST(DispatchEnd, WaitsForNoWorkAndRunsNoneThatIsLeft) {
    const testSupport::ShellResult result = testSupport::shell("timeout 30 " CHILD_PATH);
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.output, "ended\n");
}

}  // namespace
