// Scripts in place of the Mac's commands.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "tests/end_to_end/rig/child_process.h"
#include "tests/end_to_end/rig/fifo.h"
#include "tests/support/files.h"

namespace end_to_end {

// The environment that makes a program start the commands in `folder` ("<folder>/usr/sbin/sysctl" and so on) instead of
// the machine's own.
[[nodiscard]] Environment startingCommandsIn(const std::filesystem::path& folder);

// Commands are named by their absolute paths: "/usr/sbin/sysctl", "/usr/sbin/system_profiler" and "/bin/df". A command
// without a script does not exist. Scripts can be replaced at any time. The object must outlive the program.
class ScriptedMachine {
  public:
    ScriptedMachine();

    // From its next run on, the command runs `shellText` by sh(1), with its arguments in "$@".
    void script(const std::string& command, std::string_view shellText);

    // Each later run of the command is recorded and then hangs.
    void hold(const std::string& command);

    // The runs of all scripted commands in the order of their start: path and arguments, separated by spaces.
    std::vector<std::string> runs();

    // Waits until that many runs have started.
    bool waitForRuns(std::size_t count);

    // For the program's environment.
    Environment environment() const { return startingCommandsIn(commands()); }

  private:
    std::filesystem::path commands() const { return folder_.path() / "commands"; }
    std::filesystem::path fileOf(const std::string& command) const;
    std::filesystem::path bodyOf(const std::string& command) const;
    std::filesystem::path gateOf(const std::string& command) const;

    testSupport::TemporaryFolder folder_;
    Fifo record_;
    std::map<std::string, std::unique_ptr<Fifo>> gates_;  // by command
};

}  // namespace end_to_end
