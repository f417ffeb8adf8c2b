// What every_back_end_test.cpp asks of the back ends that it is linked with: the program's own, or the fakes.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace everyBackEnd {

// Runs both queues until `done`.
void runQueuesUntil(const std::function<bool()>& done);

// From now on "/bin/echo a 'b c'" prints "a b c".
void makeEcho();

// From now on the desktop opens pages, or none.
void openPages(bool opens);

// The lines that `action` logs.
[[nodiscard]] std::vector<std::string> linesOf(const std::function<void()>& action);

}  // namespace everyBackEnd
