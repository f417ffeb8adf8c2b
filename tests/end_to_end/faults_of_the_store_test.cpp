// What becomes of the device id when the settings cannot be read or written.
#include <sys/mount.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>

#include "tests/end_to_end/rig/namespaces.h"
#include "tests/end_to_end/surroundings.h"

namespace end_to_end {
namespace {

using testSupport::ScriptedServer;

class StoreFault : public Surroundings {
  protected:
    // The id that a start of the program reports, both times the same one; "" when it does not come to that.
    std::string idOfAStart() {
        const ScriptedServer server(website({}), websitePort());
        Program program(setting());
        EXPECT_EQ(program.failure(), std::nullopt);
        if (!program.waitForLine("✅ Usage tracked successfully")) return "";
        const std::string line = program.log().at(1);
        const std::string id = line.substr(line.rfind(' ') + 1);
        EXPECT_NE(server.requests().at(0).body().find(id), std::string::npos);
        EXPECT_NE(server.requests().at(1).body().find(id), std::string::npos);
        return id;
    }

    // An id that this machine would not make again if it were lost.
    std::string storeAnId() const {
        std::filesystem::create_directories(folder());
        const std::string id = "11111111-2222-4333-8444-555555555555";
        std::ofstream(file()) << "[General]\ncom.velmora.device_id=" << id << "\n";
        return id;
    }

    [[nodiscard]] std::filesystem::path folder() const { return home_.path() / ".config/velmora"; }
    [[nodiscard]] std::filesystem::path file() const { return folder() / "hardware-detector.conf"; }
};

// The home is a small disk of its own.
class DiskFault : public StoreFault {
  protected:
    void SetUp() override {
        if (const auto& refusal = whyNoOwnNamespaces()) GTEST_SKIP() << *refusal;
        StoreFault::SetUp();
        mountHome(0);
    }

    void TearDown() override { umount(home_.path().c_str()); }

    void mountHome(unsigned long flags) {
        ASSERT_EQ(mount("tmpfs", home_.path().c_str(), "tmpfs", flags, "size=64k"), 0);
    }

    void fillHome() {
        std::ofstream filler(home_.path() / "filler");
        while (filler << std::string(512, 'x') << std::flush) {
        }
    }
};

TEST_F(DiskFault, AFullDiskLeavesAnIdForTheRun) {
    std::filesystem::create_directories(folder());
    fillHome();
    EXPECT_EQ(idOfAStart().size(), 36U);
}

TEST_F(DiskFault, ADiskThatFillsUpLaterKeepsTheId) {
    const std::string id = storeAnId();
    fillHome();
    EXPECT_EQ(idOfAStart(), id);
    EXPECT_EQ(valueIn(settingsFile(), "com.velmora.device_id"), id);
}

TEST_F(DiskFault, AReadOnlyHomeKeepsTheId) {
    const std::string id = storeAnId();
    mountHome(MS_REMOUNT | MS_RDONLY);
    EXPECT_EQ(idOfAStart(), id);
    EXPECT_EQ(valueIn(settingsFile(), "com.velmora.device_id"), id);
}

TEST_F(DiskFault, AReadOnlyEmptyHomeLeavesAnIdForTheRun) {
    mountHome(MS_REMOUNT | MS_RDONLY);
    EXPECT_EQ(idOfAStart().size(), 36U);
}

TEST_F(StoreFault, AFolderInTheFilesPlaceLeavesAnIdForTheRun) {
    std::filesystem::create_directories(file());
    EXPECT_EQ(idOfAStart().size(), 36U);
}

TEST_F(StoreFault, APipeInTheFilesPlaceLeavesAnIdForTheRun) {
    std::filesystem::create_directories(folder());
    ASSERT_EQ(mkfifo(file().c_str(), 0600), 0);
    EXPECT_EQ(idOfAStart().size(), 36U);
}

TEST_F(StoreFault, WhatAnotherProgramPutIntoTheFileStays) {
    const std::string id = storeAnId();
    std::ofstream(file(), std::ios::app) << "other=kept\n";
    EXPECT_EQ(idOfAStart(), id);
    EXPECT_EQ(valueIn(settingsFile(), "other"), "kept");
}

// It puts a new file in the place of the old one between the program's own two writes.
TEST_F(StoreFault, WhatAnotherProgramWritesMeanwhileStays) {
    const ScriptedServer server(
        [file = file()](const testSupport::RecordedRequest& request) -> testSupport::Script {
            if (request.target() == "/api/track-install/") {
                const std::filesystem::path other = file.string() + ".other";
                std::filesystem::copy_file(file, other);
                std::ofstream(other, std::ios::app) << "other=kept\n";
                std::filesystem::rename(other, file);
            }
            return {testSupport::Send{testSupport::answerBytes(200, "{}")}};
        },
        websitePort());
    Program program(setting());
    ASSERT_TRUE(program.waitForLine("✅ Usage tracked successfully"));
    EXPECT_EQ(valueIn(settingsFile(), "other"), "kept");
    EXPECT_EQ(valueIn(settingsFile(), "com.velmora.install_tracked"), "1");
    EXPECT_EQ(valueIn(settingsFile(), "com.velmora.device_id").size(), 36U);
    EXPECT_NE(valueIn(settingsFile(), "com.velmora.last_tracked_date"), "(absent)");
}

TEST_F(StoreFault, AnEmptyFileGetsANewIdThatStays) {
    std::filesystem::create_directories(folder());
    std::ofstream(file()) << "";
    const std::string id = idOfAStart();
    EXPECT_EQ(id.size(), 36U);
    EXPECT_EQ(idOfAStart(), id);
}

TEST_F(StoreFault, ALockOfAKilledProgramIsNoLock) {
    const std::string id = storeAnId();
    std::ofstream(file().string() + ".lock") << "999999\nhardware-detector\n\n\n";
    EXPECT_EQ(idOfAStart(), id);
}

TEST_F(StoreFault, WithoutAHomeThereIsAnIdForTheRun) {
    const ScriptedServer server(website({}), websitePort());
    Program::Setting homeless = setting();
    homeless.environment["HOME"] = "/nowhere/at/all";
    Program program(homeless);
    ASSERT_TRUE(program.waitForLine("✅ Usage tracked successfully"));
    EXPECT_EQ(program.log().at(1).size(), std::string("📤 Device ID: ").size() + 36);
}

}  // namespace
}  // namespace end_to_end
