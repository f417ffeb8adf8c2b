// What becomes of the device id when the settings cannot be read or written. No machine id is there to make it of, so
// that a lost id would be a new one.
#include <fcntl.h>
#include <sys/file.h>
#include <sys/mount.h>

#include <filesystem>
#include <fstream>

#include "tests/end_to_end/surroundings.h"

namespace end_to_end {
namespace {

using testSupport::ScriptedServer;

class StoreFault : public Surroundings {
  protected:
    void SetUp() override {
        Surroundings::SetUp();
        machine_.makeMissing("/etc/machine-id");
    }

    // The id that a start of the program reports, both times the same one; "" when it does not come to that.
    std::string idOfAStart() {
        const ScriptedServer server(website({}), websitePort);
        Program program(setting());
        EXPECT_EQ(program.failure(), std::nullopt);
        if (!program.waitForLine("✅ Usage tracked successfully")) return "";
        const std::string line = program.log().at(1);
        const std::string id = line.substr(line.rfind(' ') + 1);
        EXPECT_NE(server.requests().at(0).body().find(id), std::string::npos);
        EXPECT_NE(server.requests().at(1).body().find(id), std::string::npos);
        return id;
    }

    // The home's own file system, gone with the test's namespace.
    void mountHome(const char* options) { ASSERT_EQ(mount("tmpfs", home_.path().c_str(), "tmpfs", 0, options), 0); }

    void fillHome() {
        std::ofstream filler(home_.path() / "filler");
        while (filler << std::string(512, 'x') << std::flush) {
        }
    }

    [[nodiscard]] std::filesystem::path folder() const { return home_.path() / ".config/velmora"; }
};

TEST_F(StoreFault, AFullDiskLeavesAnIdForTheRun) {
    mountHome("size=64k");
    std::filesystem::create_directories(folder());
    fillHome();
    EXPECT_EQ(idOfAStart().size(), 36U);
}

TEST_F(StoreFault, ADiskThatFillsUpLaterKeepsTheId) {
    mountHome("size=64k");
    const std::string id = idOfAStart();
    fillHome();
    EXPECT_EQ(idOfAStart(), id);
    EXPECT_EQ(valueIn(settingsFile(), "com.velmora.device_id"), id);
}

TEST_F(StoreFault, AReadOnlyHomeKeepsTheId) {
    mountHome("size=64k");
    const std::string id = idOfAStart();
    ASSERT_EQ(mount("tmpfs", home_.path().c_str(), "tmpfs", MS_REMOUNT | MS_RDONLY, nullptr), 0);
    EXPECT_EQ(idOfAStart(), id);
    EXPECT_EQ(valueIn(settingsFile(), "com.velmora.device_id"), id);
}

TEST_F(StoreFault, AReadOnlyEmptyHomeLeavesAnIdForTheRun) {
    mountHome("size=64k,ro");
    EXPECT_EQ(idOfAStart().size(), 36U);
}

TEST_F(StoreFault, AFolderInTheFilesPlaceLeavesAnIdForTheRun) {
    std::filesystem::create_directories(folder() / "hardware-detector.conf");
    EXPECT_EQ(idOfAStart().size(), 36U);
}

TEST_F(StoreFault, WhatAnotherProgramPutIntoTheFileStays) {
    const std::string id = idOfAStart();
    std::ofstream(folder() / "hardware-detector.conf", std::ios::app) << "other=kept\n";
    EXPECT_EQ(idOfAStart(), id);
    EXPECT_EQ(valueIn(settingsFile(), "other"), "kept");
}

// It puts a new file in the place of the old one between the program's own two writes.
TEST_F(StoreFault, WhatAnotherProgramWritesMeanwhileStays) {
    const std::filesystem::path file = folder() / "hardware-detector.conf";
    const ScriptedServer server(
        [&file](const testSupport::RecordedRequest& request) -> testSupport::Script {
            if (request.target() == "/api/track-install/") {
                const std::filesystem::path other = file.string() + ".other";
                std::filesystem::copy_file(file, other);
                std::ofstream(other, std::ios::app) << "other=kept\n";
                std::filesystem::rename(other, file);
            }
            return {testSupport::Send{testSupport::answerBytes(200, "{}")}};
        },
        websitePort);
    Program program(setting());
    ASSERT_TRUE(program.waitForLine("✅ Usage tracked successfully"));
    EXPECT_EQ(valueIn(settingsFile(), "other"), "kept");
    EXPECT_EQ(valueIn(settingsFile(), "com.velmora.install_tracked"), "1");
    EXPECT_EQ(valueIn(settingsFile(), "com.velmora.device_id").size(), 36U);
    EXPECT_NE(valueIn(settingsFile(), "com.velmora.last_tracked_date"), "(absent)");
}

TEST_F(StoreFault, AnEmptyFileGetsANewIdThatStays) {
    std::filesystem::create_directories(folder());
    std::ofstream(folder() / "hardware-detector.conf") << "";
    const std::string id = idOfAStart();
    EXPECT_EQ(id.size(), 36U);
    EXPECT_EQ(idOfAStart(), id);
}

TEST_F(StoreFault, ALockThatNobodyGivesBackIsWaitedForInVain) {
    const std::string id = idOfAStart();
    const Descriptor lock(open(folder().c_str(), O_RDONLY | O_CLOEXEC));
    ASSERT_EQ(flock(lock.number(), LOCK_EX), 0);
    EXPECT_EQ(idOfAStart(), id);
}

TEST_F(StoreFault, ALockOfAKilledProgramIsNoLock) {
    const std::string id = idOfAStart();
    std::ofstream(folder() / "hardware-detector.conf.lock") << "999999\nhardware-detector\n\n\n";
    EXPECT_EQ(idOfAStart(), id);
}

TEST_F(StoreFault, WithoutAHomeThereIsAnIdForTheRun) {
    const ScriptedServer server(website({}), websitePort);
    Program::Setting homeless = setting();
    homeless.environment["HOME"] = "/nowhere/at/all";
    Program program(homeless);
    ASSERT_TRUE(program.waitForLine("✅ Usage tracked successfully"));
    EXPECT_EQ(program.log().at(1).size(), std::string("📤 Device ID: ").size() + 36);
}

}  // namespace
}  // namespace end_to_end
