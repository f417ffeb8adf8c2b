// Killing the program at any moment of its first start leaves whole settings and never loses a reported id.
#include <sys/mount.h>

#include <chrono>
#include <filesystem>
#include <random>

#include "tests/end_to_end/rig/namespaces.h"
#include "tests/end_to_end/surroundings.h"

namespace end_to_end {
namespace {

constexpr int rounds = 50;
constexpr const char* machineId = "/etc/machine-id";

std::string idIn(const RecordedRequest& request) {
    const std::string mark = R"("device_id":")";
    const std::size_t start = request.body().find(mark);
    return start == std::string::npos ? "" : request.body().substr(start + mark.size(), 36);
}

// Several of them run side by side.
class KilledProgram : public Surroundings, public testing::WithParamInterface<int> {
  protected:
    void SetUp() override {
        Surroundings::SetUp();
        // Without an identifier of the machine, a lost id would be replaced by another one.
        if (!std::filesystem::exists(machineId)) return;
        if (const auto& refusal = whyNoOwnNamespaces()) GTEST_SKIP() << *refusal;
        ASSERT_EQ(mount("/dev/null", machineId, nullptr, MS_BIND, nullptr), 0);
    }

    // How long a first start takes here until both reports are out. Deaths come before, between and after them.
    [[nodiscard]] std::chrono::milliseconds durationOfAStart() {
        const ScratchFolder home;
        Program::Setting first = setting();
        first.environment["HOME"] = home.path();
        const ScriptedServer server(website({}), websitePort());
        const auto start = std::chrono::steady_clock::now();
        const Program program(first);
        EXPECT_TRUE(program.waitForLine("✅ Usage tracked successfully"));
        return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - start);
    }
};

TEST_P(KilledProgram, LeavesWholeSettingsAndTheIdItReported) {
    // The same moments in each run; --gtest_random_seed draws others.
    const unsigned seed =
        static_cast<unsigned>(testing::GTEST_FLAG(random_seed)) * 10 + static_cast<unsigned>(GetParam());
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    const std::chrono::milliseconds latestDeath = durationOfAStart() * 5 / 4;
    std::uniform_int_distribution<std::chrono::milliseconds::rep> death(0, latestDeath.count());
    int heard = 0;
    for (int round = 0; round < rounds; ++round) {
        const ScratchFolder home;
        Program::Setting first = setting();
        first.environment["HOME"] = home.path();
        std::vector<RecordedRequest> requests;
        {
            const ScriptedServer server(website({}), websitePort());
            Program program(first);
            program.waitForExit(std::chrono::milliseconds(death(random)));
            program.signal(SIGKILL);
            ASSERT_EQ(program.waitForExit(), (ExitStatus{ExitStatus::Kind::signal, SIGKILL}));
            requests = server.requests();
        }
        heard += requests.empty() ? 0 : 1;
        std::string id;  // The next start's.
        for (int start = 0; start < 2; ++start) {
            const ScriptedServer server(website({}), websitePort());
            const Program program(first);
            ASSERT_TRUE(program.waitForLine("✅ Usage tracked successfully")) << "round " << round;
            const std::string now = idIn(server.requests().at(0));
            ASSERT_EQ(now.size(), 36U);
            if (start == 1) {
                ASSERT_EQ(now, id) << "round " << round;
            }
            id = now;
        }
        for (const RecordedRequest& request : requests) ASSERT_EQ(idIn(request), id) << "round " << round;
    }
    RecordProperty("rounds in which a request was heard", heard);
    EXPECT_GT(heard, 0);
    EXPECT_LT(heard, rounds) << "every death came too late to matter";
}

INSTANTIATE_TEST_SUITE_P(FourTimesFifty, KilledProgram, testing::Range(0, 4));

}  // namespace
}  // namespace end_to_end
