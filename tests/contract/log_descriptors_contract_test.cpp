#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <map>
#include <sstream>

#include "tests/support/files.h"
#include "tests/support/own_mounts.h"
#include "tests/support/shell.h"

namespace {

using testSupport::quoted;
using testSupport::shell;
using testSupport::ShellResult;
using testSupport::shellWithOwnMounts;
using testSupport::textOf;
using testSupport::whyNoOwnMounts;

TEST(LogDescriptors, AFileOpenedInTheNumberOfAClosedStreamGetsNoLine) {
    for (const char* closed : {"<&-", ">&-", "2>&-", "<&- >&-", "<&- 2>&-", ">&- 2>&-", "<&- >&- 2>&-"}) {
        const testSupport::TemporaryFolder folder;
        const std::filesystem::path file = folder.path() / "file";
        const ShellResult result = shell(CHILD_PATH " beside-a-file " + quoted(file) + " " + closed);
        EXPECT_EQ(result.status, 0) << closed;
        const bool hasOutput = std::string(closed).find(" >&-") == std::string::npos && closed[0] != '>';
        EXPECT_EQ(result.output, hasOutput ? "logged\nlogged\nlogged\n" : "") << closed;
        EXPECT_TRUE(std::filesystem::exists(file)) << closed;
        EXPECT_EQ(textOf(file), "") << closed;
    }
}

TEST(LogDescriptors, AChildInheritsNothingOfTheLog) {
    const testSupport::TemporaryFolder folder;
    const std::filesystem::path log = folder.path() / "log";
    const std::filesystem::path error = folder.path() / "error";
    EXPECT_EQ(
        shell(CHILD_PATH " with-a-child 'ls -l /proc/self/fd >&2' >" + quoted(log) + " 2>" + quoted(error)).status, 0);

    EXPECT_EQ(textOf(log), "logged\n");
    const std::string descriptorsOfTheChild = textOf(error);
    EXPECT_NE(descriptorsOfTheChild.find(" -> " + error.string() + "\n"), std::string::npos) << descriptorsOfTheChild;
    EXPECT_EQ(descriptorsOfTheChild.find(" -> " + log.string() + "\n"), std::string::npos) << descriptorsOfTheChild;
    const std::string usualDescriptors = shell("ls -l /proc/self/fd").output;
    EXPECT_EQ(std::count(descriptorsOfTheChild.begin(), descriptorsOfTheChild.end(), '\n'),
              std::count(usualDescriptors.begin(), usualDescriptors.end(), '\n'))
        << descriptorsOfTheChild;
}

TEST(LogDescriptors, AFullDeviceLosesOnlyTheLine) { EXPECT_EQ(shell(CHILD_PATH " much >/dev/full").status, 0); }

TEST(LogDescriptors, ALineLostOnAFullDiskIsNotWrittenLater) {
    if (const auto refusal = whyNoOwnMounts()) GTEST_SKIP() << *refusal;
    const testSupport::TemporaryFolder folder;
    // A disk of four pages, full until the child removes the ballast.
    const ShellResult result = shellWithOwnMounts("cd " + quoted(folder.path()) + R"sh(
                                     set -e
                                     mount -t tmpfs -o size=16k none .
                                     cd "$PWD"
                                     head -c 100000 /dev/zero >ballast 2>/dev/null || true
                                     )sh" CHILD_PATH " until-there-is-room ballast >log; cat log");
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.output, "kept\n");
}

TEST(LogDescriptors, LinesOfSeveralThreadsAreNotMixed) {
    std::istringstream lines(shell(CHILD_PATH " many-long-lines").output);
    std::map<std::pair<std::size_t, char>, int> counts;
    for (std::string line; std::getline(lines, line);) {
        ASSERT_FALSE(line.empty());
        ASSERT_EQ(line.find_first_not_of(line.at(0)), std::string::npos);
        ++counts[{line.size(), line.at(0)}];
    }
    EXPECT_EQ(counts.size(), 16U);
    for (const char letter : {'a', 'b', 'c', 'd', 'e', 'f', 'g', 'h'}) {
        EXPECT_EQ((counts[{200'000, letter}]), 1) << letter;  // More than a pipe holds.
        EXPECT_EQ((counts[{10'000, letter}]), 50) << letter;
    }
}

}  // namespace
