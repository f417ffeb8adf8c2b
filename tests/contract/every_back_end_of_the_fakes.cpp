#include "tests/contract/every_back_end.h"

#include <gtest/gtest.h>

#include "tests/fakes/fakes.h"

void everyBackEnd::runQueuesUntil(const std::function<bool()>& done) {
    while (!done()) {
        fakes::runBackground();
        fakes::runMainQueue();
    }
}

void everyBackEnd::makeEcho() { fakes::machine().commands["/bin/echo a b c"] = "a b c\n"; }

void everyBackEnd::openPages(bool opens) { fakes::machine().opensPages = opens; }

std::vector<std::string> everyBackEnd::linesOf(const std::function<void()>& action) {
    fakes::machine().log.clear();
    action();
    return fakes::machine().log;
}

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
