// Compares the main job with the oracle in random cases.
#include <gtest/gtest.h>

#include <iostream>

#include "app/content_view.h"
#include "app/hardware_row.h"
#include "tests/app/outline.h"
#include "tests/app/random_cases/case_generator.h"
#include "tests/app/random_cases/oracle.h"
#include "tests/fakes/fakes.h"

namespace randomCases {
namespace {

using fakes::machine;
using Lines = std::vector<std::string>;

const std::string base = "http://website.example";

void finish() {
    fakes::runBackground();
    fakes::runMainQueue();
}

// Empty if the two are the same.
std::string difference(const std::string& subject, const Lines& found, const Lines& expected) {
    if (found == expected) return "";
    const auto printed = [](const Lines& lines) {
        std::string text;
        for (const std::string& line : lines) text += "    " + line + "\n";
        return text;
    };
    return "  " + subject + "\n" + printed(found) + "  expected\n" + printed(expected);
}

// The outline of the five rows in the window.
std::string rowsOf(const Lines& values) {
    std::string rows;
    for (std::size_t row = 0; const char* label : {"OS", "Processor", "Graphics Card", "RAM", "Storage"}) {
        rows += outlineOf(HardwareRow{label, values.at(row++)}.body(), 3);
    }
    return rows;
}

// The differences between the program and the oracle; empty if there are none.
std::string differencesIn(const Case& round) {
    fakes::reset();
    machine().commands = {{"/usr/sbin/sysctl -n machdep.cpu.brand_string", round.brand},
                          {"/usr/sbin/system_profiler SPHardwareDataType", round.overview},
                          {"/usr/sbin/sysctl -n hw.memsize", round.memory},
                          {"/usr/sbin/system_profiler SPDisplaysDataType", round.displays},
                          {"/bin/df -h /", round.disk}};
    machine().website = [&](const auto&) { return fakes::answered(round.status, bodyOf(round)); };

    const ContentView view;
    view.detectHardware();
    finish();
    const std::string outline = outlineOf(view.body());
    view.websiteUrl.set(base + round.addressTail);
    view.sendToWebsite();
    finish();

    Lines sent;
    for (const platform::HttpRequest& request : machine().requests) {
        sent.insert(sent.end(), {request.url.absoluteString(), request.body});
    }
    const ExpectedBehaviour expected = expectedBehaviour(round, base);
    const std::string rows = rowsOf(expected.values);
    return (outline.find(rows) == std::string::npos ? outline + "  does not contain\n" + rows : "") +
           difference("sent", sent, {expected.endpoint, expected.body}) +
           difference("log", machine().log, expected.log) +
           difference("banner", {view.statusMessage.get()}, {expected.banner}) +
           difference("opened", machine().pagesAsked, expected.pages) +
           (machine().delayed.empty() == expected.ends ? "  the program ends, or goes on, unexpectedly\n" : "");
}

// A simpler case that still fails.
Case shrunk(const Case& round) {
    for (const Case& candidate : simplerThan(round)) {
        if (!differencesIn(candidate).empty()) return shrunk(candidate);
    }
    return round;
}

TEST(RandomCases, MatchTheOracle) {
    // The same cases in each run; --gtest_random_seed draws others, and more.
    constexpr int usualSeed = 1;
    const int given = testing::GTEST_FLAG(random_seed);
    const int seed = given != 0 ? given : usualSeed;
    const int rounds = given != 0 ? 10'000 : 1'000;
    std::cout << "seed " << seed << std::endl;
    CaseGenerator generator(static_cast<std::uint64_t>(seed));
    for (int round = 0; round < rounds; ++round) {
        const Case drawn = generator.next();
        if (differencesIn(drawn).empty()) continue;
        const Case simplest = shrunk(drawn);
        FAIL() << "seed " << seed << ", round " << round << ", simplified:\n"
               << literalOf(simplest) << "\n"
               << differencesIn(simplest);
    }
}

}  // namespace
}  // namespace randomCases
