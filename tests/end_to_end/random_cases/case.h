// One round of the main job, as data: what the machine prints, what is typed, what the website answers.
#pragma once

#include <map>
#include <string>
#include <vector>

namespace end_to_end {

struct Case {
    // The five outputs, as bytes.
    std::string brand;
    std::string overview;
    std::string memory;
    std::string displays;
    std::string disk;

    std::string addressTail;  // Behind the website's own address.

    int status = 200;
    // The answer: the members of an object, each with its JSON text, or else `body` as it stands.
    std::map<std::string, std::string> members;
    bool isObject = true;
    std::string body;
};

// The answer's bytes.
[[nodiscard]] std::string bodyOf(const Case& round);

// The case as C++ that makes it again.
[[nodiscard]] std::string literalOf(const Case& round);

// Each of these is the case with one thing less in it; none is the case itself.
[[nodiscard]] std::vector<Case> simplerThan(const Case& round);

}  // namespace end_to_end
