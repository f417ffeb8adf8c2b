#include "platform/user_defaults.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <fstream>
#include <map>
#include <sstream>

#include "tests/support/files.h"
#include "tests/support/shell.h"

namespace {

using testSupport::quoted;
using testSupport::shell;
using testSupport::ShellResult;

// Each run() is a new process, like a new start of the program.
class UserDefaults : public testing::Test {
  protected:
    [[nodiscard]] std::string child() const {
        return "env -u XDG_CONFIG_HOME HOME=" + quoted(home_.path()) + " " CHILD_PATH " ";
    }

    [[nodiscard]] std::string run(const std::string& actions) const {
        const ShellResult result = shell(child() + actions);
        EXPECT_EQ(result.status, 0) << actions;
        return result.output;
    }

    [[nodiscard]] std::filesystem::path folder() const { return home_.path() / ".config/velmora"; }
    [[nodiscard]] std::filesystem::path file() const { return folder() / "hardware-detector.conf"; }

    void writeFile(const std::string& text) const {
        std::filesystem::create_directories(folder());
        std::ofstream(file(), std::ios::binary) << text;
    }

    testSupport::TemporaryFolder home_;
};

TEST_F(UserDefaults, AValueIsOnDiskWhenTheCallReturns) {
    // The shell kills itself right after the child.
    const ShellResult result = shell("sh -c " + quoted(child() + "set key kept; kill -9 $$"));
    EXPECT_NE(result.status, 0);
    EXPECT_EQ(run("get key"), "[kept]\n");
}

TEST_F(UserDefaults, ABooleanIsStoredAsOneOrZero) {
    EXPECT_EQ(run("bool yes 1 bool no 0 get yes get no"), "[1]\n[0]\n");
    EXPECT_EQ(run("get yes get no"), "[1]\n[0]\n");
}

TEST_F(UserDefaults, ARunningProcessReadsWhatAnotherStores) {
    const std::string gate = quoted(home_.path() / "gate");
    const std::string script = "mkfifo " + gate + "; " + child() + "get key pause get key <" + gate +
                               " | { read first; " + child() +
                               "set key new; echo >&3; read then; echo $first $then; } 3>" + gate;
    EXPECT_EQ(shell(script).output, "none [new]\n");
}

// The other program replaces the file between two writes of this one.
TEST_F(UserDefaults, ChangesByAnotherProgramAreKept) {
    const std::string gate = quoted(home_.path() / "gate");
    const std::string other = quoted(home_.path() / "other");
    const std::string script = "mkfifo " + gate + "; " + child() + "set key first get key pause set later second <" +
                               gate + " | { read shown; cp " + quoted(file()) + " " + other + "; echo other=kept >>" +
                               other + "; mv " + other + " " + quoted(file()) + "; echo >&3; cat; } 3>" + gate;
    EXPECT_EQ(shell(script).status, 0);
    EXPECT_EQ(run("get key get other get later"), "[first]\n[kept]\n[second]\n");
}

TEST_F(UserDefaults, APlainValueIsAString) {
    writeFile("[General]\nnumber=42\nreal=1.5\ntruth=true\nempty=\nquoted=\"a, b\"\nmarked=@String(x)\n");
    EXPECT_EQ(run("get number get real get truth get empty get quoted get marked"),
              "[42]\n[1.5]\n[true]\n[]\n[a, b]\n[x]\n");
}

TEST_F(UserDefaults, AListBytesADateOrARectangleIsNoString) {
    // The date is the toolkit's form of 2024-11-02, 12:00 UTC.
    const std::map<std::string, std::string> values = {
        {"list", "a, b"},
        {"empties", ","},
        {"bytes", "@ByteArray(x)"},
        {"date", R"(@DateTime(\0\0\0\x10\0\0\0\0\0\0%\x8b\xc9\x2\x93.\0\xff\xff\xff\xff\x1))"},
        {"rectangle", "@Rect(1 2 3 4)"},
        {"nothing", "@Invalid()"}};
    for (const auto& [key, value] : values) {
        writeFile("[General]\n" + key + "=" + value + "\n");
        EXPECT_EQ(run("get " + key), "none\n") << value;
    }
}

TEST_F(UserDefaults, OtherKeysInTheFileAreKept) {
    writeFile("[General]\nother=kept\n\n[another]\nkey=kept too\n");
    EXPECT_EQ(run("set key new"), "");
    const std::string text = testSupport::textOf(file());
    EXPECT_NE(text.find("other=kept"), std::string::npos) << text;
    EXPECT_NE(text.find("key=kept too"), std::string::npos) << text;
}

TEST_F(UserDefaults, ProcessesThatStoreDifferentKeysAtOnceLoseNone) {
    std::string script;
    for (int key = 0; key < 8; ++key) script += child() + "set key" + std::to_string(key) + " value & ";
    EXPECT_EQ(shell(script + "wait").output, "");
    for (int key = 0; key < 8; ++key) EXPECT_EQ(run("get key" + std::to_string(key)), "[value]\n") << key;
}

TEST_F(UserDefaults, AnEmptyOrCorruptFileIsReplaced) {
    for (const char* text : {"", "\x01\xFF[[[\nno equals sign\n=\n%%%=%%%\n"}) {
        writeFile(text);
        EXPECT_EQ(run("get key set key value get key"), "none\n[value]\n") << text;
        EXPECT_EQ(run("get key"), "[value]\n") << text;
    }
}

TEST_F(UserDefaults, WithAFolderInTheFilesPlaceValuesLastForTheProcess) {
    std::filesystem::create_directories(file());
    EXPECT_EQ(run("set key value get key"), "[value]\n");
    EXPECT_EQ(run("get key"), "none\n");
}

TEST_F(UserDefaults, ALockFileOfADeadProcessIsIgnored) {
    std::filesystem::create_directories(folder());
    // The toolkit's lock file of a process that was killed while it wrote.
    std::ofstream(folder() / "hardware-detector.conf.lock") << "999999\nuser_defaults_child\n\n\n";
    EXPECT_EQ(run("set key value"), "");
    EXPECT_EQ(run("get key"), "[value]\n");
}

TEST_F(UserDefaults, XdgConfigHomeIsUsed) {
    const std::filesystem::path named = home_.path() / "named";
    EXPECT_EQ(
        shell("XDG_CONFIG_HOME=" + quoted(named) + " HOME=" + quoted(home_.path()) + " " CHILD_PATH " set key value")
            .status,
        0);
    EXPECT_TRUE(std::filesystem::exists(named / "velmora/hardware-detector.conf"));
}

}  // namespace
