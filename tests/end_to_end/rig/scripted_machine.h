// A Mac's commands, each of which prints what a test has written down.
#pragma once

#include <chrono>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "tests/end_to_end/rig/child_process.h"
#include "tests/end_to_end/rig/fifo.h"
#include "tests/end_to_end/rig/scratch_folder.h"

namespace end_to_end {

// The variables that make a program start the commands in `folder` ("<folder>/usr/sbin/sysctl" and so on) in place of
// the machine's own.
[[nodiscard]] Environment startingCommandsIn(const std::filesystem::path& folder);

// Commands are named by the absolute path that the program starts them by: "/usr/sbin/sysctl",
// "/usr/sbin/system_profiler" or "/bin/df". One that has no script is missing. What a command does can be changed at
// any time.
//
// Make it before the program and keep it for longer.
class ScriptedMachine {
  public:
    ScriptedMachine();

    // From its next run on, the command does what `shellText` says: for sh(1), its arguments in "$@".
    void script(const std::string& command, std::string_view shellText);

    // Each later run of a scripted command hangs after it has been recorded.
    void hold(const std::string& command);

    // The runs of all scripted commands in the order in which they began, each as its path and arguments with single
    // spaces between.
    std::vector<std::string> runs();

    // Waits until that many runs have begun.
    bool waitForRuns(std::size_t count, std::chrono::milliseconds limit = patience);

    // For the program's environment.
    Environment environment() const { return startingCommandsIn(commands()); }

  private:
    std::filesystem::path commands() const { return folder_.path() / "commands"; }
    std::filesystem::path fileOf(const std::string& command) const;
    std::filesystem::path bodyOf(const std::string& command) const;
    std::filesystem::path gateOf(const std::string& command) const;

    ScratchFolder folder_;
    Fifo record_;
    std::map<std::string, std::unique_ptr<Fifo>> gates_;  // by command
};

}  // namespace end_to_end
