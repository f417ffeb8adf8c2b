// One case of the main job: the commands' outputs, the address and the website's answer.
#pragma once

#include <map>
#include <string>
#include <vector>

namespace randomCases {

struct Case {
    // The outputs of the five commands.
    std::string brand;
    std::string overview;
    std::string memory;
    std::string displays;
    std::string disk;

    std::string addressTail;  // Appended to the website's address.

    int status = 200;
    // The answer: an object of these members, each with its value as JSON, or `body` if it is no object.
    std::map<std::string, std::string> members;
    bool isObject = true;
    std::string body;
};

// The answer's bytes.
[[nodiscard]] std::string bodyOf(const Case& round);

// The case as a C++ expression.
[[nodiscard]] std::string literalOf(const Case& round);

// Simpler variants of the case, each with one part removed or shortened.
[[nodiscard]] std::vector<Case> simplerThan(const Case& round);

}  // namespace randomCases
