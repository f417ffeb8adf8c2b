#include "tests/app/random_cases/case.h"

#include <cstdio>

namespace randomCases {

namespace {

constexpr const char* plainBrand = "Intel\n";
constexpr const char* plainMemory = "8589934592\n";

std::string quoted(const std::string& bytes) {
    std::string text = "\"";
    for (const char byte : bytes) {
        const auto code = static_cast<unsigned char>(byte);
        if (byte == '"' || byte == '\\') {
            text += std::string("\\") + byte;
        } else if (code >= 0x20 && code < 0x7F) {
            text += byte;
        } else {
            char octal[5];
            std::snprintf(octal, sizeof octal, "\\%03o", code);
            text += octal;
        }
    }
    return text + "\"";
}

}  // namespace

std::string bodyOf(const Case& round) {
    if (!round.isObject) return round.body;
    std::string body = "{";
    for (const auto& [name, value] : round.members) {
        if (body.size() > 1) body += ", ";
        body += "\"" + name + "\": " + value;
    }
    return body + "}";
}

std::string literalOf(const Case& round) {
    std::string members;
    for (const auto& [name, value] : round.members) members += "{" + quoted(name) + ", " + quoted(value) + "}, ";
    return "Case{.brand = " + quoted(round.brand) + ",\n .overview = " + quoted(round.overview) +
           ",\n .memory = " + quoted(round.memory) + ",\n .displays = " + quoted(round.displays) +
           ",\n .disk = " + quoted(round.disk) + ",\n .addressTail = " + quoted(round.addressTail) +
           ",\n .status = " + std::to_string(round.status) + ",\n .members = {" + members +
           "},\n .isObject = " + (round.isObject ? "true" : "false") + ",\n .body = " + quoted(round.body) + "}";
}

std::vector<Case> simplerThan(const Case& round) {
    std::vector<Case> simpler;
    const auto with = [&](auto change) {
        Case candidate = round;
        change(candidate);
        if (literalOf(candidate) != literalOf(round)) simpler.push_back(candidate);
    };
    with([](Case& c) {
        if (c.brand.size() > std::string(plainBrand).size()) c.brand = plainBrand;
    });
    with([](Case& c) { c.overview.clear(); });
    with([](Case& c) {
        if (c.memory.size() > std::string(plainMemory).size()) c.memory = plainMemory;
    });
    with([](Case& c) { c.displays.clear(); });
    with([](Case& c) { c.disk.clear(); });
    with([](Case& c) { c.addressTail.clear(); });
    with([](Case& c) { c.status = 200; });
    for (const auto& [name, value] : round.members) {
        with([&member = name](Case& c) { c.members.erase(member); });
    }
    for (std::string Case::*text : {&Case::brand, &Case::overview, &Case::memory, &Case::displays, &Case::disk,
                                    &Case::addressTail, &Case::body}) {
        with([text](Case& c) { (c.*text).erase(0, (c.*text).size() / 2); });
        with([text](Case& c) { (c.*text).resize((c.*text).size() / 2); });
        with([text](Case& c) { (c.*text).erase(0, 1); });
        with([text](Case& c) { (c.*text).resize((c.*text).empty() ? 0 : (c.*text).size() - 1); });
    }
    return simpler;
}

}  // namespace randomCases
