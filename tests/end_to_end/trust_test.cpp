// What the program does not let others do with it.
#include <sys/mount.h>
#include <sys/stat.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>

#include "tests/end_to_end/rig/namespaces.h"
#include "tests/end_to_end/surroundings.h"

namespace end_to_end {
namespace {

using testSupport::answerBytes;
using testSupport::ScriptedServer;
using testSupport::Send;

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

TEST_F(Trust, NeitherThePathNorTheWorkingFolderNorAVariablePutsAnotherProgramInTheCommandsPlace) {
    const ScriptedServer server(website({}), websitePort());
    const std::filesystem::path impostors = makeImpostors();
    std::filesystem::current_path(impostors);
    Program::Setting misled = setting();
    misled.environment["PATH"] = impostors.string() + ":.:" + misled.environment["PATH"];
    misled.environment["ENV"] = misled.environment["BASH_ENV"] = impostors / "profile";
    misled.environment["SHELL"] = impostors / "sh";
    misled.environment["IFS"] = "/";
    Program program(misled);
    ASSERT_EQ(program.failure(), std::nullopt);
    const AccessibleProgram window(program.pid());
    ASSERT_TRUE(press(window, "Detect Hardware"));
    EXPECT_TRUE(shows(window, "Apple M1 GPU 4GB"));
    EXPECT_EQ(machine_.runs().size(), 5U);
    EXPECT_FALSE(std::filesystem::exists(mark()));
}

TEST_F(Trust, TheMachinesIdentifierStaysAtHome) {
    if (const auto& refusal = whyNoOwnNamespaces()) GTEST_SKIP() << *refusal;
    const std::string identifier = "0123456789abcdef0123456789abcdef";
    const ScratchFolder folder;
    std::ofstream(folder.path() / "machine-id") << identifier << "\n";
    std::filesystem::permissions(folder.path(), std::filesystem::perms(0755));
    // /etc as it is, but for that file, which the machine may lack.
    const std::string layers = "lowerdir=" + folder.path().string() + ":/etc";
    ASSERT_EQ(mount("overlay", "/etc", "overlay", MS_RDONLY, layers.c_str()), 0);

    std::string all;
    {
        const ScriptedServer server(website({Send{answerBytes(200, stored)}}), websitePort());
        Program program(setting());
        const AccessibleProgram window(program.pid());
        EXPECT_TRUE(press(window, "Detect Hardware"));
        EXPECT_TRUE(press(window, "Send to Website"));
        EXPECT_EQ(program.waitForExit(), (ExitStatus{ExitStatus::Kind::status, 0}));
        for (const auto& request : server.requests()) all += request.bytes;
        all += program.bytes(Stream::output) + program.bytes(Stream::error) + settingsFile();
        for (const auto& call : opener_.calls()) all += call.at(0);
    }
    umount("/etc");
    ASSERT_NE(all.find(valueIn(settingsFile(), "com.velmora.device_id")), std::string::npos);
    all.erase(std::remove(all.begin(), all.end(), '-'), all.end());
    std::transform(all.begin(), all.end(), all.begin(), [](unsigned char c) { return std::tolower(c); });
    EXPECT_EQ(all.find(identifier), std::string::npos);
}

// The answer names a file; what the desktop is asked for is a page of the website.
TEST_F(Trust, AWebsiteCannotHaveAFileOpened) {
    const ScriptedServer server(
        website({Send{answerBytes(200, R"({"success": true, "redirect_url": "file:///etc/passwd"})")}}), websitePort());
    Program program(setting());
    const AccessibleProgram window(program.pid());
    ASSERT_TRUE(press(window, "Detect Hardware"));
    ASSERT_TRUE(press(window, "Send to Website"));
    ASSERT_TRUE(opener_.waitForCalls(1));
    EXPECT_EQ(opener_.calls(), (std::vector<std::vector<std::string>>{{base() + "/file:///etc/passwd"}}));
}

}  // namespace
}  // namespace end_to_end
