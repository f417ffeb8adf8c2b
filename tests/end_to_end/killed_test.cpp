// Killing the program at any moment of its first start leaves valid settings, and the next start reports the same id.
#include <sys/mount.h>

#include <chrono>
#include <filesystem>
#include <random>

#include "tests/end_to_end/rig/mount_namespace.h"
#include "tests/end_to_end/surroundings.h"

namespace end_to_end {
namespace {

constexpr const char* machineId = "/etc/machine-id";

std::string idIn(const RecordedRequest& request) {
    const std::string mark = R"("device_id":")";
    const std::size_t start = request.body().find(mark);
    return start == std::string::npos ? "" : request.body().substr(start + mark.size(), 36);
}

class KilledProgram : public Surroundings, public testing::WithParamInterface<int> {
  protected:
    void SetUp() override {
        Surroundings::SetUp();
        // With a machine id, a lost device id would come back the same.
        if (!std::filesystem::exists(machineId)) return;
        if (const auto refusal = whyNoMountNamespace()) GTEST_SKIP() << *refusal;
        ASSERT_EQ(mount("/dev/null", machineId, nullptr, MS_BIND, nullptr), 0);
    }

    // How long a first start takes here until both reports are sent.
    [[nodiscard]] std::chrono::microseconds durationOfAStart() {
        const testSupport::TemporaryFolder home;
        Program::Setting first = setting();
        first.environment["HOME"] = home.path();
        const ScriptedServer server(website({}), websitePort());
        const auto start = std::chrono::steady_clock::now();
        const Program program(first);
        EXPECT_TRUE(program.waitForLine("✅ Usage tracked successfully"));
        return std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::steady_clock::now() - start);
    }
};

// Kills the program at random moments of equal parts of a start, and while it waits for the answer to its first report.
TEST_P(KilledProgram, LeavesValidSettingsWithTheReportedId) {
    // The same moments in each run; --gtest_random_seed draws others, and more.
    const int given = testing::GTEST_FLAG(random_seed);
    const int rounds = given == 0 ? 10 : 100;
    const unsigned seed = static_cast<unsigned>(given) * 10 + static_cast<unsigned>(GetParam());
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    // Kills before, between and after the two reports.
    const std::chrono::microseconds part = durationOfAStart() * 5 / 4 / rounds;
    std::uniform_int_distribution<std::chrono::microseconds::rep> withinThePart(0, part.count());
    for (int round = 0; round <= rounds; ++round) {
        SCOPED_TRACE("round " + std::to_string(round));
        const testSupport::TemporaryFolder home;
        Program::Setting first = setting();
        first.environment["HOME"] = home.path();
        std::vector<RecordedRequest> requests;
        {
            const ScriptedServer server(round == rounds ? always({HoldOpen{}}) : website({}), websitePort());
            Program program(first);
            if (round == rounds) {
                ASSERT_TRUE(server.waitForRequests(1));
            } else {
                const auto moment = part * round + std::chrono::microseconds(withinThePart(random));
                program.waitForExit(std::chrono::duration_cast<std::chrono::milliseconds>(moment));
            }
            program.signal(SIGKILL);
            ASSERT_EQ(program.waitForExit(), (ExitStatus{ExitStatus::Kind::signal, SIGKILL}));
            requests = server.requests();
        }
        std::string id;
        for (int start = 0; start < 2; ++start) {
            const ScriptedServer server(website({}), websitePort());
            const Program program(first);
            ASSERT_TRUE(program.waitForLine("✅ Usage tracked successfully"));
            const std::string now = idIn(server.requests().at(0));
            ASSERT_EQ(now.size(), 36U);
            if (start == 1) {
                ASSERT_EQ(now, id);
            }
            id = now;
        }
        for (const RecordedRequest& request : requests) ASSERT_EQ(idIn(request), id);
    }
}

INSTANTIATE_TEST_SUITE_P(Parts, KilledProgram, testing::Range(0, 2));

}  // namespace
}  // namespace end_to_end
