// What is shown when the commands that tell of the hardware do not behave.
#include <sys/resource.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>

#include "tests/end_to_end/rig/program_window.h"
#include "tests/end_to_end/surroundings.h"

namespace end_to_end {
namespace {

using testSupport::ScriptedServer;

struct Fault {
    const char* name;
    std::map<std::string, std::string> scripts;  // In place of the well-behaved ones.
    std::vector<std::string> values;             // Of the five rows.
};

std::string nameOf(const testing::TestParamInfo<Fault>& info) { return info.param.name; }

class CommandFault : public Surroundings {
  protected:
    std::vector<std::string> valuesIn(const AccessibleProgram& window) {
        std::vector<std::string> values;
        const std::vector<Element> labels = window.labels();
        for (std::size_t at = 0; at + 1 < labels.size(); ++at) {
            for (const char* label : {"OS:", "Processor:", "Graphics Card:", "RAM:", "Storage:"}) {
                if (labels[at].name() == label) values.push_back(labels[at + 1].name());
            }
        }
        return values;
    }
};

class CommandFaultTable : public CommandFault, public testing::WithParamInterface<Fault> {};

TEST_P(CommandFaultTable, ShowsTheseValues) {
    ScriptedServer server(website({}), websitePort());
    for (const auto& [command, script] : GetParam().scripts) machine_.script(command, script);
    Program program(setting());
    ASSERT_EQ(program.failure(), std::nullopt);
    const AccessibleProgram window(program.pid());
    ASSERT_TRUE(press(window, "Detect Hardware"));
    ASSERT_TRUE(shows(window, "Hardware detected successfully!"));
    EXPECT_EQ(valuesIn(window), GetParam().values) << window.tree();
    EXPECT_EQ(program.bytes(Stream::error).find("complaint"), std::string::npos);
}

const std::string chip = "Apple M1 Pro Max";

INSTANTIATE_TEST_SUITE_P(
    Faults, CommandFaultTable,
    testing::Values(Fault{"KilledAfterPrinting",
                          {{sysctl, "echo 17179869184; kill -9 $$"}},
                          {"macOS", "17179869184", "Apple M1 GPU 4GB", "16 GB DDR4", "494 GB SSD"}},
                    Fault{"KilledBeforePrinting",
                          {{sysctl, "kill -9 $$"}, {systemProfiler, "kill -11 $$"}, {df, "kill -15 $$"}},
                          {"macOS", "", "Unknown 4GB", "8 GB DDR4", "512 GB SSD"}},
                    Fault{"NothingPrinted",
                          {{sysctl, "true"}, {systemProfiler, "true"}, {df, "true"}},
                          {"macOS", "", "Unknown 4GB", "8 GB DDR4", "512 GB SSD"}},
                    Fault{
                        "BytesThatAreNoText",
                        {{sysctl, R"(printf '\377')"}, {systemProfiler, R"(printf '\377')"}, {df, R"(printf '\377')"}},
                        {"macOS", "Unknown", "Unknown 4GB", "8 GB DDR4", "512 GB SSD"}},
                    Fault{"OnlyComplaints",
                          {{sysctl, "echo complaint >&2; exit 1"},
                           {systemProfiler, "echo complaint >&2"},
                           {df, "echo complaint >&2"}},
                          {"macOS", "", "Unknown 4GB", "8 GB DDR4", "512 GB SSD"}},
                    Fault{"AMegabyteOfComplaints",
                          {{df, R"(head -c 1000000 /dev/zero | tr '\0' x >&2; printf 'h\n/dev/d 250G\n')"}},
                          {"macOS", chip, "Apple M1 GPU 4GB", "16 GB DDR4", "250 GB SSD"}},
                    Fault{"FailureAfterTheAnswer",
                          {{df, R"(printf 'Filesystem Size\n/dev/d 250G\n'; exit 3)"}},
                          {"macOS", chip, "Apple M1 GPU 4GB", "16 GB DDR4", "250 GB SSD"}},
                    Fault{"ReadingItsInput",
                          {{df, R"(cat >/dev/null; printf 'Filesystem Size\n/dev/d 250G\n')"}},
                          {"macOS", chip, "Apple M1 GPU 4GB", "16 GB DDR4", "250 GB SSD"}},
                    Fault{"MemoryBeyondAnyNumber",
                          {{sysctl, "echo 99999999999999999999"}},
                          {"macOS", "99999999999999999999", "Apple M1 GPU 4GB", "8 GB DDR4", "494 GB SSD"}}),
    nameOf);

TEST_F(CommandFault, AGrandchildThatKeepsThePipeKeepsTheDetectionGoing) {
    ScriptedServer server(website({}), websitePort());
    const std::string gate = home_.path() / "gate";
    ASSERT_EQ(mkfifo(gate.c_str(), 0600), 0);
    machine_.script(df, "(read -r ticket <'" + gate + R"(') & printf 'Filesystem Size\n/dev/d 250G\n')");
    Program program(setting());
    const AccessibleProgram window(program.pid());
    ASSERT_TRUE(press(window, "Detect Hardware"));
    ASSERT_TRUE(machine_.waitForRuns(5));
    std::ofstream grandchild(gate);  // Opens once the grandchild reads.
    EXPECT_TRUE(window.button("Detecting..."));

    grandchild << "go on\n" << std::flush;
    EXPECT_TRUE(shows(window, "250 GB SSD"));
}

TEST_F(CommandFault, AnOutputOfThePipesSizeIsTakenWhole) {
    ScriptedServer server(website({}), websitePort());
    machine_.script(sysctl, R"(head -c 65535 /dev/zero | tr '\0' x; echo)");
    Program program(setting());
    const AccessibleProgram window(program.pid());
    ASSERT_TRUE(press(window, "Detect Hardware"));
    EXPECT_TRUE(shows(window, std::string(65'535, 'x')));
}

TEST_F(CommandFault, AnOutputThatThePipeCannotHoldHoldsTheDetectionUpAndNothingElse) {
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
    EXPECT_EQ(program.waitForExit(), (ExitStatus{ExitStatus::Kind::status, 0}));
}

// What is open stays so.
void takeFreeDescriptorsFrom(const Program& program) {
    const std::string open = "/proc/" + std::to_string(program.pid()) + "/fd/";
    rlim_t firstFree = 0;
    while (std::filesystem::is_symlink(open + std::to_string(firstFree))) ++firstFree;
    const rlimit limit{firstFree, firstFree};
    ASSERT_EQ(prlimit(program.pid(), RLIMIT_NOFILE, &limit, nullptr), 0);
}

const std::vector<std::string> fallbacks = {"macOS", "Unknown", "Unknown 4GB", "8 GB DDR4", "512 GB SSD"};

TEST_F(CommandFault, WithoutAFreeProcessSlotTheFixedValuesStandAndNoPageOpens) {
    const ScriptedServer server(website({testSupport::Send{testSupport::answerBytes(200, stored)}}), websitePort());
    Program::Setting crowded = setting();
    crowded.noProcessSlots = true;
    Program program(crowded);
    ASSERT_EQ(program.failure(), std::nullopt);
    const AccessibleProgram window(program.pid());
    ASSERT_TRUE(press(window, "Detect Hardware"));
    ASSERT_TRUE(shows(window, "Hardware detected successfully!"));
    EXPECT_EQ(valuesIn(window), fallbacks);
    ASSERT_TRUE(press(window, "Send to Website"));
    EXPECT_TRUE(program.waitForLine("❌ Failed to open URL: " + base() + "/results?hardware_id=42"));
    EXPECT_TRUE(shows(window, "Hardware data sent successfully! Opening website..."));
    EXPECT_EQ(program.waitForExit(), (ExitStatus{ExitStatus::Kind::status, 0}));
}

// The toolkit needs some for what it does for the first time, hence the detection before.
TEST_F(CommandFault, WithoutAFreeDescriptorTheFixedValuesStandAndNothingIsSent) {
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP() << "the sanitizers look at memory through pipes, and take it for broken when they get none";
#endif
    const ScriptedServer server(website({}), websitePort());
    Program program(setting());
    ASSERT_EQ(program.failure(), std::nullopt);
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
