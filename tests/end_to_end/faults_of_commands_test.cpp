// Faults of the hardware commands.
#include <sys/resource.h>

#include <filesystem>

#include "tests/end_to_end/rig/program_window.h"
#include "tests/end_to_end/surroundings.h"

namespace end_to_end {
namespace {

using CommandFault = Surroundings;

TEST_F(CommandFault, AnOutputLargerThanThePipeBlocksOnlyTheDetection) {
    ScriptedServer server(website({}), websitePort());
    machine_.script(sysctl, R"(head -c 65537 /dev/zero | tr '\0' x)");
    Program program(setting());
    const AccessibleProgram window(program.pid());
    ASSERT_TRUE(press(window, "Detect Hardware"));
    ASSERT_TRUE(machine_.waitForRuns(1));
    EXPECT_TRUE(waitFor([&] { return window.button("Detecting...").has_value(); }));
    EXPECT_TRUE(window.field()->setText("http://still.works.example"));
    const auto shown = ProgramWindow::waitFor(session().display(), program.pid());
    ASSERT_TRUE(shown);
    shown->askToClose();
    EXPECT_EQ(program.waitForExit(), success);
}

// Open descriptors stay open.
void takeFreeDescriptorsFrom(const Program& program) {
    const std::string open = "/proc/" + std::to_string(program.pid()) + "/fd/";
    rlim_t firstFree = 0;
    while (std::filesystem::is_symlink(open + std::to_string(firstFree))) ++firstFree;
    const rlimit limit{firstFree, firstFree};
    ASSERT_EQ(prlimit(program.pid(), RLIMIT_NOFILE, &limit, nullptr), 0);
}

const std::vector<std::string> fallbacks = {"macOS", "Unknown", "Unknown 4GB", "8 GB DDR4", "512 GB SSD"};

TEST_F(CommandFault, WithoutAFreeProcessSlotTheFallbacksAreShownAndNoPageOpens) {
    const ScriptedServer server(website({Send{answerBytes(200, stored)}}), websitePort());
    Program::Setting crowded = setting();
    crowded.noProcessSlots = true;
    Program program(crowded);
    const AccessibleProgram window(program.pid());
    ASSERT_TRUE(press(window, "Detect Hardware"));
    ASSERT_TRUE(shows(window, "Hardware detected successfully!"));
    EXPECT_EQ(valuesIn(window), fallbacks);
    ASSERT_TRUE(press(window, "Send to Website"));
    EXPECT_TRUE(program.waitForLine("❌ Failed to open URL: " + base() + "/results?hardware_id=42"));
    EXPECT_TRUE(shows(window, "Hardware data sent successfully! Opening website..."));
    EXPECT_EQ(program.waitForExit(), success);
}

// Detects once before, since the toolkit opens descriptors when it does something for the first time.
TEST_F(CommandFault, WithoutAFreeDescriptorTheFallbacksAreShownAndNothingIsSent) {
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP() << "the sanitizers need descriptors to check memory";
#endif
    const ScriptedServer server(website({}), websitePort());
    Program program(setting());
    const AccessibleProgram window(program.pid());
    ASSERT_TRUE(program.waitForLine("   Response: noted"));
    ASSERT_TRUE(press(window, "Detect Hardware"));
    ASSERT_TRUE(shows(window, "Hardware detected successfully!"));
    takeFreeDescriptorsFrom(program);
    ASSERT_TRUE(press(window, "Detect Hardware"));
    ASSERT_TRUE(shows(window, "Unknown 4GB")) << program.bytes(Stream::error);
    EXPECT_EQ(valuesIn(window), fallbacks);
    ASSERT_TRUE(press(window, "Send to Website"));
    EXPECT_TRUE(shows(window, "Error: Failed to send hardware data. Check the console for details."))
        << program.bytes(Stream::error);
    EXPECT_TRUE(program.waitForLine("❌ Network error: Could not connect to the server."));
}

}  // namespace
}  // namespace end_to_end
