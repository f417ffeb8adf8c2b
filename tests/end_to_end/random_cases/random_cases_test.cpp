// Compares the real program with the oracle in random cases.
#include <algorithm>
#include <chrono>
#include <fstream>
#include <functional>
#include <iostream>
#include <mutex>
#include <sstream>

#include "tests/end_to_end/random_cases/case_generator.h"
#include "tests/end_to_end/random_cases/oracle.h"
#include "tests/end_to_end/surroundings.h"

namespace end_to_end {
namespace {

std::string printed(const std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines) text += "    " + line + "\n";
    return text;
}

// Uses one program until it ends after a success, then starts the next.
class RandomCases : public Surroundings, public testing::WithParamInterface<int> {
  protected:
    void SetUp() override {
        Surroundings::SetUp();
        const auto printing = [this](const char* name) { return "cat '" + (home_.path() / name).string() + "'"; };
        machine_.script(sysctl, "case \"$2\" in machdep.cpu.brand_string) " + printing("brand") + " ;; *) " +
                                    printing("memory") + " ;; esac");
        machine_.script(systemProfiler, "case \"$1\" in SPHardwareDataType) " + printing("overview") + " ;; *) " +
                                            printing("displays") + " ;; esac");
        machine_.script(df, printing("disk"));
    }

    void TearDown() override { program_.reset(); }

    void write(const char* name, const std::string& bytes) const {
        std::ofstream(home_.path() / name, std::ios::binary) << bytes;
    }

    // The differences between the program and the oracle; empty if there are none.
    std::string differencesIn(const Case& round) {
        const ExpectedBehaviour expected = expectedBehaviour(round, base());
        {
            const std::lock_guard lock(mutex_);
            answer_ = answerBytes(round.status, bodyOf(round));
        }
        if (!program_) {
            program_ = std::make_unique<Program>(setting());
            if (!program_->waitForLine("   Response: noted")) return "does not start";
        }
        const AccessibleProgram window(program_->pid());
        write("brand", round.brand);
        write("memory", round.memory);
        write("overview", round.overview);
        write("displays", round.displays);
        write("disk", round.disk);
        if (!press(window, "Detect Hardware") || !shows(window, "Hardware detected successfully!")) {
            return "does not detect";
        }
        std::string differences;
        const std::vector<std::string> values = valuesIn(window);
        if (values != expected.values) {
            differences += "  values\n" + printed(values) + "  expected\n" + printed(expected.values);
        }

        const std::optional<Element> field = window.field();
        if (!field || !field->setText(base() + round.addressTail)) return "has no address";
        const std::size_t logBefore = program_->log().size();
        const std::size_t requestsBefore = server_.requests().size();
        const std::size_t pagesBefore = opener_.pages().size();
        if (!press(window, "Send to Website")) {
            differences += "  does not send\n";
        } else if (expected.ends) {  // Two seconds later; on a busy machine too soon to check the banner.
            if (program_->waitForExit() != success) differences += "  does not end with status 0\n";
        } else {
            // The log first, since reading it costs the program no time.
            waitFor([&] { return program_->log().size() >= logBefore + expected.log.size(); });
            if (!shows(window, expected.banner)) differences += "  no banner \"" + expected.banner + "\"\n";
        }

        std::vector<std::string> log = program_->log();
        log.erase(log.begin(), log.begin() + static_cast<std::ptrdiff_t>(logBefore));
        std::vector<std::string> expectedLog = expected.log;
        if (expected.ends) {  // Two threads log, in any order.
            std::sort(log.begin(), log.end());
            std::sort(expectedLog.begin(), expectedLog.end());
        }
        if (log != expectedLog) differences += "  log\n" + printed(log) + "  expected\n" + printed(expectedLog);

        std::vector<RecordedRequest> requests = server_.requests();
        requests.erase(requests.begin(), requests.begin() + static_cast<std::ptrdiff_t>(requestsBefore));
        if (requests.size() != 1) {
            differences += "  " + std::to_string(requests.size()) + " requests\n";
        } else if (requests[0].requestLine() != "POST " + expected.target + " HTTP/1.1" ||
                   requests[0].body() != expected.body) {
            differences += "  sent\n    " + requests[0].requestLine() + "\n    " + requests[0].body() +
                           "\n  expected\n    " + expected.target + "\n    " + expected.body + "\n";
        }

        waitFor([&] { return opener_.pages().size() >= pagesBefore + expected.pages.size(); });
        std::vector<std::string> pages = opener_.pages();
        pages.erase(pages.begin(), pages.begin() + static_cast<std::ptrdiff_t>(pagesBefore));
        if (pages != expected.pages) {
            differences += "  opened\n" + printed(pages) + "  expected\n" + printed(expected.pages);
        }
        if (expected.ends || program_->waitForExit(std::chrono::milliseconds(0))) program_.reset();
        return differences;
    }

    // A simpler case that still fails, by at most 150 tries.
    Case shrunk(Case round) {
        int triesLeft = 150;
        for (bool smaller = true; smaller;) {
            smaller = false;
            for (const Case& candidate : simplerThan(round)) {
                if (--triesLeft < 0) return round;
                if (differencesIn(candidate).empty()) continue;
                round = candidate;
                smaller = true;
                break;
            }
        }
        return round;
    }

  private:
    std::mutex mutex_;
    std::string answer_;
    ScriptedServer server_{[this](const RecordedRequest& request) -> Script {
                               if (request.target() == "/api/track-install/") return {Send{answerBytes(200, "{}")}};
                               if (request.target() == "/api/track-usage/") return {Send{answerBytes(200, "noted")}};
                               const std::lock_guard lock(mutex_);
                               return {Send{answer_}};
                           },
                           websitePort()};
    std::unique_ptr<Program> program_;
};

TEST_P(RandomCases, MatchTheOracle) {
    // The same cases in each run; --gtest_random_seed draws others, and more.
    constexpr int usualSeed = 1;
    const int given = testing::GTEST_FLAG(random_seed);
    const int seed = given != 0 ? given : usualSeed;
    const int rounds = given != 0 ? 100 : 25;
    std::cout << "seed " << seed << std::endl;
    CaseGenerator generator(static_cast<std::uint64_t>(seed) * 100 + static_cast<std::uint64_t>(GetParam()));
    for (int round = 0; round < rounds; ++round) {
        const Case drawn = generator.next();
        const std::string differences = differencesIn(drawn);
        if (differences.empty()) continue;
        // Reported before shrinking, which takes long and may fail.
        ADD_FAILURE() << "seed " << seed << ", round " << round << "\n" << literalOf(drawn) << "\n" << differences;
        const Case simplest = shrunk(drawn);
        FAIL() << "Simplified:\n" << literalOf(simplest) << "\n" << differencesIn(simplest);
    }
}

INSTANTIATE_TEST_SUITE_P(Parts, RandomCases, testing::Range(0, 4));

}  // namespace
}  // namespace end_to_end
