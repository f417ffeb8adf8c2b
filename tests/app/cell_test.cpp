#include <gtest/gtest.h>

#include <string>
#include <thread>

#include "platform/ui.h"

namespace {

// The address is read on a background thread while the main thread may set it.
TEST(Cell, GivesAWholeValueWhileAnotherThreadSetsIt) {
    // Too long for the small string optimisation.
    const std::string one(1000, 'a');
    const std::string other(2000, 'b');
    const platform::Cell<std::string> cell({}, one);
    std::thread writer([&] {
        for (int i = 0; i < 50000; ++i) cell.set(i % 2 == 0 ? other : one);
    });
    int broken = 0;
    for (int i = 0; i < 50000; ++i) {
        const std::string value = cell.get();
        if (value != one && value != other) ++broken;
    }
    writer.join();
    EXPECT_EQ(broken, 0);
}

TEST(Cell, IsSharedByItsCopies) {
    const platform::Cell<int> cell({}, 1);
    const platform::Cell<int> copy = cell;
    copy.set(2);
    EXPECT_EQ(cell.get(), 2);
}

}  // namespace
