// A second, independent implementation of the program's behaviour, on code points and without libraries.
#pragma once

#include <string>
#include <vector>

#include "tests/app/random_cases/case.h"

namespace randomCases {

struct ExpectedBehaviour {
    std::vector<std::string> values;  // The five rows.
    std::string endpoint;             // The address of the submission.
    std::string body;                 // The submission's body.
    std::vector<std::string> log;     // The log of the submission.
    std::string banner;
    std::vector<std::string> pages;  // The pages opened in the browser.
    bool ends = false;               // True if the program ends by itself.
};

// `base` is the website's address without a trailing slash.
[[nodiscard]] ExpectedBehaviour expectedBehaviour(const Case& round, const std::string& base);

}  // namespace randomCases
