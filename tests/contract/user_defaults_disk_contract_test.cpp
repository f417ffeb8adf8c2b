#include <gtest/gtest.h>
#include <sys/stat.h>

#include <fstream>
#include <sstream>

#include "tests/support/files.h"
#include "tests/support/own_mounts.h"
#include "tests/support/shell.h"

namespace {

using testSupport::quoted;
using testSupport::shell;
using testSupport::ShellResult;
using testSupport::shellWithOwnMounts;
using testSupport::whyNoOwnMounts;

class UserDefaultsOnDisk : public testing::Test {
  protected:
    void SetUp() override {
        unsetenv("XDG_CONFIG_HOME");
        setenv("HOME", home_.path().c_str(), 1);
    }

    [[nodiscard]] static std::string run(const std::string& actions) {
        const ShellResult result = shell(CHILD_PATH " " + actions);
        EXPECT_EQ(result.status, 0) << actions;
        return result.output;
    }

    // Runs a script in a mount namespace of its own. "$child" is the child's path.
    [[nodiscard]] static std::string runApart(const std::string& script) {
        const ShellResult result = shellWithOwnMounts("set -e; child=" CHILD_PATH "\n" + script);
        EXPECT_EQ(result.status, 0) << script;
        return result.output;
    }

    [[nodiscard]] std::filesystem::path file() const { return home_.path() / ".config/velmora/hardware-detector.conf"; }
    [[nodiscard]] unsigned mode() const {
        struct stat status {};
        EXPECT_EQ(stat(file().c_str(), &status), 0);
        return status.st_mode & 0777U;
    }

    testSupport::TemporaryFolder home_;
};

TEST_F(UserDefaultsOnDisk, TheNextProcessReadsEveryTextByteForByte) {
    const std::string longText(100'000, 'y');
    std::string sets;
    std::string gets;
    std::string expected;
    for (const std::string text : {"@ByteArray(x)", "@", "a\r\nb\n", "\x01\x1F\x7F", "\t tab \t", ", ", "a,\"b\", c",
                                   "\"\"", "\\x41\\n\\0", "%%20%", ";", "#", "=", "[General]", "-1.50", "false",
                                   "\xC2\xA0\xEE\x80\x80 x\xEF\xBB\xBF \xF0\x9F\x94\x8D", longText.c_str()}) {
        const std::string key = "key" + std::to_string(expected.size());
        sets += "set " + key + " " + quoted(text) + " ";
        gets += "get " + key + " ";
        expected += "[" + text + "]\n";
    }
    // The longest argument of a command.
    ASSERT_LT(sets.size(), 130'000U);
    EXPECT_EQ(run(sets + gets), expected);
    EXPECT_EQ(run(gets), expected);
}

TEST_F(UserDefaultsOnDisk, KeysThatNeedEscapingAreDistinct) {
    const std::string gets = "get a.b_c get a/b get a get '%41' get A get 'ä key' get 'a=b' get '[x]' get '#'";
    const std::string expected = "[1]\n[2]\n[3]\n[4]\n[5]\n[6]\n[7]\n[8]\n[9]\n";
    EXPECT_EQ(run("set a.b_c 1 set a/b 2 set a 3 set '%41' 4 set A 5 set 'ä key' 6 set 'a=b' 7 set '[x]' 8 set '#' 9 " +
                  gets),
              expected);
    EXPECT_EQ(run(gets), expected);
}

TEST_F(UserDefaultsOnDisk, TheFileStaysPrivateToItsOwner) {
    EXPECT_EQ(run("set key one"), "");
    EXPECT_EQ(mode(), 0600U);
    EXPECT_EQ(shell("umask 000; " CHILD_PATH " get key set key two bool flag 1").status, 0);
    EXPECT_EQ(mode(), 0600U);
}

TEST_F(UserDefaultsOnDisk, AFileReadableByOthersBecomesPrivateOnFirstUse) {
    std::filesystem::create_directories(file().parent_path());
    std::ofstream(file()) << "[General]\nkey=old\n";
    std::filesystem::permissions(file(), std::filesystem::perms(0666));
    EXPECT_EQ(run("get key"), "[old]\n");
    EXPECT_EQ(mode(), 0600U);
}

TEST_F(UserDefaultsOnDisk, ANewFolderIsPrivateToItsOwner) {
    EXPECT_EQ(shell("umask 000; " CHILD_PATH " set key value").status, 0);
    EXPECT_EQ(std::filesystem::status(file().parent_path()).permissions(), std::filesystem::perms::owner_all);
}

TEST_F(UserDefaultsOnDisk, AFolderOpenToOthersBecomesPrivateOnFirstUse) {
    std::filesystem::create_directories(file().parent_path());
    std::filesystem::permissions(file().parent_path(), std::filesystem::perms::all);
    EXPECT_EQ(run("get key"), "none\n");
    EXPECT_EQ(std::filesystem::status(file().parent_path()).permissions(), std::filesystem::perms::owner_all);
}

constexpr const char* valuesOfThisRun = "get key set key new get key bool flag 1 get flag";

// Reading a pipe without a writer would hang.
TEST_F(UserDefaultsOnDisk, APipeInTheFilesPlaceIsLeftAlone) {
    std::filesystem::create_directories(file().parent_path());
    ASSERT_EQ(mkfifo(file().c_str(), 0600), 0);
    EXPECT_EQ(run(valuesOfThisRun), "none\n[new]\n[1]\n");
    EXPECT_TRUE(std::filesystem::is_fifo(file()));
}

// The toolkit would wait for such a lock forever.
TEST_F(UserDefaultsOnDisk, AFolderOrAPipeInTheLocksPlaceIsLeftAlone) {
    const std::filesystem::path lock = file().string() + ".lock";
    std::filesystem::create_directories(lock);
    EXPECT_EQ(run(valuesOfThisRun), "none\n[new]\n[1]\n");
    EXPECT_TRUE(std::filesystem::is_directory(lock));
    std::filesystem::remove(lock);
    ASSERT_EQ(mkfifo(lock.c_str(), 0600), 0);
    EXPECT_EQ(run(valuesOfThisRun), "none\n[new]\n[1]\n");
    EXPECT_TRUE(std::filesystem::is_fifo(lock));
}

TEST_F(UserDefaultsOnDisk, ALinkInTheFilesPlaceAndItsTargetAreLeftAlone) {
    std::filesystem::create_directories(file().parent_path());
    std::ofstream(home_.path() / "target") << "[General]\nkey=another program's\n";
    std::filesystem::create_symlink(home_.path() / "target", file());
    EXPECT_EQ(run(valuesOfThisRun), "none\n[new]\n[1]\n");
    EXPECT_TRUE(std::filesystem::is_symlink(file()));
    EXPECT_EQ(testSupport::textOf(home_.path() / "target"), "[General]\nkey=another program's\n");
}

// A home on a full disk, with "old" stored under "key". Removing the ballast makes room.
constexpr const char* fullDisk = R"sh(
mount -t tmpfs -o size=64k none "$HOME"
cd "$HOME"
mkfifo gate
$child set key old
head -c 1000000 /dev/zero >ballast 2>/dev/null || true
if { echo x >room; } 2>/dev/null; then exit 9; fi
)sh";

TEST_F(UserDefaultsOnDisk, OnAFullDiskNewValuesLastForTheProcess) {
    if (const auto refusal = whyNoOwnMounts()) GTEST_SKIP() << *refusal;
    EXPECT_EQ(runApart(std::string(fullDisk) + R"sh(
                       $child get key set other first get other set key new get key get other
                       $child get key get other)sh"),
              "[old]\n[first]\n[new]\n[first]\n[old]\nnone\n");
}

TEST_F(UserDefaultsOnDisk, AFullDiskStoresAgainOnceThereIsRoom) {
    if (const auto refusal = whyNoOwnMounts()) GTEST_SKIP() << *refusal;
    // Opening the gate for reading and writing does not block.
    EXPECT_EQ(runApart(std::string(fullDisk) + R"sh(
                       $child set key new get key pause set other text <>gate | {
                           read shown
                           rm ballast
                           echo >gate
                           cat
                           echo "$shown"
                       }
                       $child get key get other)sh"),
              "[new]\n[new]\n[text]\n");
}

TEST_F(UserDefaultsOnDisk, OnAReadOnlyDiskNewValuesLastForTheProcess) {
    if (const auto refusal = whyNoOwnMounts()) GTEST_SKIP() << *refusal;
    EXPECT_EQ(runApart(R"sh(
                       $child set key old
                       mount --bind "$HOME" "$HOME"
                       mount -o remount,bind,ro "$HOME"
                       $child get key set key new get key set other first get other bool flag 1 get flag
                       $child get key get other get flag)sh"),
              "[old]\n[new]\n[first]\n[1]\n[old]\nnone\nnone\n");
}

// Without a home the program would use the root folder, which is read-only here.
TEST_F(UserDefaultsOnDisk, WithoutAHomeValuesLastForTheProcess) {
    if (const auto refusal = whyNoOwnMounts()) GTEST_SKIP() << *refusal;
    for (const char* environment : {"env -u HOME", "env HOME= XDG_CONFIG_HOME=", "env HOME=/nonexistent"}) {
        EXPECT_EQ(runApart(std::string("mount -o remount,bind,ro /\n") + environment +
                           " $child get key set key first get key set key new get key"),
                  "none\n[first]\n[new]\n")
            << environment;
    }
}

TEST_F(UserDefaultsOnDisk, AFileInAFoldersPlaceIsLeftAlone) {
    std::filesystem::create_directories(home_.path() / "other");
    for (const std::filesystem::path& folder : {home_.path() / ".config", home_.path() / "other/velmora"}) {
        std::ofstream(folder) << "in the way";
        setenv("XDG_CONFIG_HOME", folder.filename() == "velmora" ? folder.parent_path().c_str() : "", 1);
        EXPECT_EQ(run("set key value get key bool flag 0 get flag"), "[value]\n[0]\n");
        EXPECT_EQ(run("get key"), "none\n");
        EXPECT_EQ(std::filesystem::file_size(folder), 10U);
    }
}

TEST_F(UserDefaultsOnDisk, MissingFoldersAreMade) {
    setenv("HOME", (home_.path() / "not/made yet").c_str(), 1);
    EXPECT_EQ(run("set key value"), "");
    EXPECT_TRUE(std::filesystem::exists(home_.path() / "not/made yet/.config/velmora/hardware-detector.conf"));
    EXPECT_EQ(run("get key"), "[value]\n");
}

}  // namespace
