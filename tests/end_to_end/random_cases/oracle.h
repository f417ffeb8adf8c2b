// What the program has to do in a case, worked out a second time: plainly, on code points, with no library, and without
// a look at how the program does it.
#pragma once

#include <string>
#include <vector>

#include "tests/end_to_end/random_cases/case.h"

namespace end_to_end {

struct ExpectedBehaviour {
    std::vector<std::string> values;  // Of the five rows, as shown.
    std::string target;               // The submission's path and query, as on the wire.
    std::string body;                 // The submission's body.
    std::vector<std::string> log;     // From the press of "Send to Website" to the outcome.
    std::string banner;
    std::vector<std::string> pages;  // That the desktop is asked to open.
    bool ends = false;               // Whether the program ends by itself.
};

// `base` is the website's address, without a slash at its end.
[[nodiscard]] ExpectedBehaviour expectedBehaviour(const Case& round, const std::string& base);

}  // namespace end_to_end
