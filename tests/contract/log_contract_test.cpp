#include "platform/log.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>

#include "tests/support/descriptor.h"
#include "tests/support/files.h"
#include "tests/support/shell.h"

namespace {

using testSupport::quoted;
using testSupport::shell;

// Returns what a terminal gets when a command writes to it.
std::string onATerminal(const std::string& command) {
    const testSupport::Descriptor terminal(posix_openpt(O_RDWR | O_NOCTTY));
    if (grantpt(terminal.number()) != 0 || unlockpt(terminal.number()) != 0) return "no terminal";
    const std::string name = ptsname(terminal.number());
    // Held open, so that nothing is lost when the command ends.
    const testSupport::Descriptor program(open(name.c_str(), O_RDWR | O_NOCTTY));
    if (shell(command + " >" + name).status != 0 || write(program.number(), "\4", 1) != 1) return "no command";
    std::string text;
    for (char byte = 0; read(terminal.number(), &byte, 1) == 1 && byte != '\4';) text += byte;
    return text;
}

TEST(Log, ALineIsWrittenAtOnce) {
    const testSupport::TemporaryFolder folder;
    const std::string input = quoted(folder.path() / "input");
    // The child waits for input, which it gets only after its line has been read.
    const auto result = shell("mkfifo " + input + "; " CHILD_PATH " line-and-wait <" + input +
                              " | { read line; echo \"read: $line\"; } & echo x >" + input + "; wait");
    EXPECT_EQ(result.output, "read: here\n");
}

TEST(Log, NothingIsWrittenBeforeItBegins) { EXPECT_EQ(shell(CHILD_PATH " too-early").output, "kept\n"); }

TEST(Log, BytesAreWrittenUnchanged) {
    EXPECT_EQ(shell(CHILD_PATH " odd-bytes").output, std::string("nul \0 invalid \xFF\xFE end\n\n", 22));
}

TEST(Log, AFileOrPipeGetsControlCharactersUnchanged) {
    EXPECT_EQ(shell(CHILD_PATH " controls").output, "\x1B[2J\r\x7F \t \xC2\x9B \xC3\xA9\n");
}

TEST(Log, ATerminalGetsPicturesOfControlCharacters) {
    EXPECT_EQ(onATerminal(CHILD_PATH " controls"),
              "\xE2\x90\x9B[2J\xE2\x90\x8D\xE2\x90\xA1 \t \xEF\xBF\xBD \xC3\xA9\r\n");
}

// The terminal itself adds a CR before each LF.
TEST(Log, ATerminalGetsLineEndingsUnchanged) {
    EXPECT_EQ(onATerminal(CHILD_PATH " line-endings"), "CR LF\r\r\nLF\r\nCR\xE2\x90\x8DLF CR\r\n\xE2\x90\x8D\r\n");
}

TEST(Log, OtherOutputGoesToStandardError) {
    const testSupport::TemporaryFolder folder;
    const std::string error = quoted(folder.path() / "error");
    EXPECT_EQ(shell(CHILD_PATH " strangers 2>" + error).output, "logged\n");
    EXPECT_EQ(shell("cat " + error).output, "printed\nwritten\na child\n");
}

TEST(Log, AClosedReaderDoesNotEndTheProcess) {
    const testSupport::TemporaryFolder folder;
    const std::string status = quoted(folder.path() / "status");
    EXPECT_EQ(shell("(" CHILD_PATH " much; echo $? >" + status + ") | true; cat " + status).output, "0\n");
}

TEST(Log, AClosedStandardOutputLosesOnlyTheLine) {
    EXPECT_EQ(shell(CHILD_PATH " much >&-").status, 0);
    EXPECT_EQ(shell(CHILD_PATH " much <&- >&- 2>&-").status, 0);
}

TEST(Log, AClosedStandardErrorDoesNotChangeTheLog) {
    EXPECT_EQ(shell(CHILD_PATH " strangers 2>&-").output, "logged\n");
    EXPECT_EQ(shell(CHILD_PATH " strangers <&- 2>&-").output, "logged\n");
}

}  // namespace
