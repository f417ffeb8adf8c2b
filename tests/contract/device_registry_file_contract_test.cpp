#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <fstream>

#include "tests/support/shell.h"

namespace {

using testSupport::quoted;
using testSupport::shell;

// A machine whose /etc has nothing but what a test puts there, and what the loader needs to start a program.
class MachineIdFile : public testing::Test {
  protected:
    MachineIdFile() { std::filesystem::copy_file("/etc/ld.so.cache", etc_.path() / "ld.so.cache"); }

    [[nodiscard]] std::filesystem::path file() const { return etc_.path() / "machine-id"; }
    void write(const std::string& text) const { std::ofstream(file(), std::ios::binary) << text; }

    [[nodiscard]] std::string uuid() const {
        const auto result = shell("unshare --mount --map-root-user sh -c " +
                                  quoted("mount --bind " + quoted(etc_.path()) + " /etc && exec " CHILD_PATH));
        EXPECT_EQ(result.status, 0);
        return result.output;
    }

  private:
    testSupport::TemporaryFolder etc_;
};

TEST_F(MachineIdFile, ThatIsMissingMeansNoUuid) {
    ASSERT_FALSE(std::filesystem::exists(file()));
    EXPECT_EQ(uuid(), "none\n");
}

TEST_F(MachineIdFile, ThatIsAFolderMeansNoUuid) {
    std::filesystem::create_directory(file());
    EXPECT_EQ(uuid(), "none\n");
}

TEST_F(MachineIdFile, ThatLeadsNowhereMeansNoUuid) {
    std::filesystem::create_symlink("missing", file());
    EXPECT_EQ(uuid(), "none\n");
}

TEST_F(MachineIdFile, ThatIsCutShortOrNotHexadecimalMeansNoUuid) {
    for (const char* text : {"0123456789abcdef0123456789abcd", "0123456789abcdef", "machine 0123456789abcdef\n",
                             "01234567-89ab-cdef-0123-456789abcdef\n"}) {
        write(text);
        EXPECT_EQ(uuid(), "none\n") << text;
    }
}

// A file that is not of the form stands for no machine. Read leniently, several of them stand for one and the same.
TEST_F(MachineIdFile, ThatIsNotThirtyTwoDigitsAndALineFeedMeansNoUuid) {
    for (const char* text : {"g123456789abcdef0123456789abcdef\n", "0123456789abcdef0123456789abcde\n",
                             " 0123456789abcdef0123456789abcdef\n", "0123456789abcdef 0123456789abcdef\n",
                             "0123456789abcdef0123456789abcdef00\n"}) {
        write(text);
        EXPECT_EQ(uuid(), "none\n") << text;
    }
}

TEST_F(MachineIdFile, OfNoughtsAloneIsNoIdentifier) {
    write("00000000000000000000000000000000\n");
    EXPECT_EQ(uuid(), "none\n");
}

TEST_F(MachineIdFile, NeverShowsInTheUuidInWhateverFormItIsWritten) {
    // Already marked as a version 4 UUID, so that a text handed on as it stands would pass for one.
    write("4f1a2b3c5d6e4f708192a3b4c5d6e7f8\n");
    const std::string shown = uuid();
    ASSERT_EQ(shown.size(), 37U) << shown;

    std::string digits = shown;
    digits.erase(std::remove(digits.begin(), digits.end(), '-'), digits.end());
    EXPECT_EQ(digits.find("4F1A2B3C5D6E4F708192A3B4C5D6E7F8"), std::string::npos);
    EXPECT_EQ(shown.find("4F1A2B3C-5D6E-4F70-8192-A3B4C5D6E7F8"), std::string::npos);
    EXPECT_TRUE(std::none_of(shown.begin(), shown.end(), [](unsigned char c) { return std::islower(c) != 0; }));
    // Neither half of it, in either order.
    EXPECT_EQ(digits.find("4F1A2B3C5D6E4F70"), std::string::npos);
    EXPECT_EQ(digits.find("8192A3B4C5D6E7F8"), std::string::npos);
}

TEST_F(MachineIdFile, IsAllOfTheSurroundingsThatTheUuidHangsOn) {
    write("4f1a2b3c5d6e4f708192a3b4c5d6e7f8\n");
    const std::string atFirst = uuid();
    EXPECT_EQ(atFirst.size(), 37U);
    setenv("HOME", "/nonexistent", 1);
    setenv("USER", "somebody", 1);
    EXPECT_EQ(uuid(), atFirst);
}

}  // namespace
