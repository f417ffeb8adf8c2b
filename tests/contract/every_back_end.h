// What every_back_end_test.cpp needs from the program's back ends or the fakes.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace everyBackEnd {

// Runs both queues until `done`.
void runQueuesUntil(const std::function<bool()>& done);

// Makes "/bin/echo a 'b c'" print "a b c".
void makeEcho();

// Makes opening a page succeed or fail.
void openPages(bool opens);

// The lines that `action` logs.
[[nodiscard]] std::vector<std::string> linesOf(const std::function<void()>& action);

}  // namespace everyBackEnd
