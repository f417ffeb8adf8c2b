// The program runs only the system's own commands.
#include <sys/stat.h>

#include <filesystem>
#include <fstream>

#include "tests/end_to_end/surroundings.h"

namespace end_to_end {
namespace {

class Trust : public Surroundings {
  protected:
    void TearDown() override { std::filesystem::current_path("/"); }

    // Commands of the same names, each of which leaves a mark when it is run.
    std::filesystem::path makeImpostors() {
        const std::filesystem::path folder = home_.path() / "impostors";
        std::filesystem::create_directory(folder);
        for (const char* name : {"sysctl", "system_profiler", "df", "sh", "bash", "env"}) {
            std::ofstream(folder / name) << "#!/bin/sh\n: >'" << mark().string() << "'\n";
            chmod((folder / name).c_str(), 0755);
        }
        std::ofstream(folder / "profile") << ": >'" << mark().string() << "'\n";
        return folder;
    }

    [[nodiscard]] std::filesystem::path mark() const { return home_.path() / "an-impostor-ran"; }
};

TEST_F(Trust, NeitherAFolderNorAVariableReplacesACommand) {
    const ScriptedServer server(website({}), websitePort());
    const std::filesystem::path impostors = makeImpostors();
    std::filesystem::current_path(impostors);
    Program::Setting misled = setting();
    misled.environment["PATH"] = impostors.string() + ":.:" + misled.environment["PATH"];
    misled.environment["ENV"] = misled.environment["BASH_ENV"] = impostors / "profile";
    misled.environment["SHELL"] = impostors / "sh";
    misled.environment["IFS"] = "/";
    Program program(misled);
    const AccessibleProgram window(program.pid());
    ASSERT_TRUE(press(window, "Detect Hardware"));
    EXPECT_TRUE(shows(window, "Apple M1 GPU 4GB"));
    EXPECT_EQ(machine_.runs().size(), 5U);
    EXPECT_FALSE(std::filesystem::exists(mark()));
}

}  // namespace
}  // namespace end_to_end
