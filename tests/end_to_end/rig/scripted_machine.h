// A machine whose commands print what a test has written down.
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

// Commands are named by the absolute path that the program starts them by, such as "/usr/sbin/sysctl"; the folder has
// to exist on this machine, the command need not. All others stay what they are. What a command is (a script, missing,
// not executable) is settled when mounts() is asked for; what a script does can be changed at any time.
//
// Make it before the program and keep it for longer.
class ScriptedMachine {
  public:
    ScriptedMachine();

    // From its next run on, the command does what `shellText` says: for sh(1), its arguments in "$@".
    void script(const std::string& command, std::string_view shellText);

    void makeMissing(const std::string& command);
    void makeNotExecutable(const std::string& command);

    // Each later run of a scripted command hangs after it has been recorded.
    void hold(const std::string& command);

    // The runs of all scripted commands in the order in which they began, each as its path and arguments with single
    // spaces between.
    std::vector<std::string> runs();

    // Waits until that many runs have begun.
    bool waitForRuns(std::size_t count, std::chrono::milliseconds limit = patience);

    // For Launch::mounts, after all has been said about which commands there are.
    std::vector<OverlayMount> mounts() const;

  private:
    std::filesystem::path layerOf(const std::string& command);
    std::filesystem::path bodyOf(const std::string& command) const;
    std::filesystem::path gateOf(const std::string& command) const;

    ScratchFolder folder_;
    Fifo record_;
    std::map<std::filesystem::path, std::filesystem::path> layers_;  // by the folder that each lies over
    std::map<std::string, std::unique_ptr<Fifo>> gates_;             // by command
};

}  // namespace end_to_end
