// A process that the rig starts and ends.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "tests/end_to_end/rig/patience.h"
#include "tests/support/descriptor.h"

namespace end_to_end {

using testSupport::Descriptor;

using Environment = std::map<std::string, std::string>;

struct Launch {
    std::string path;                              // absolute
    std::vector<std::string> arguments;            // without the name of the program
    Environment environment;                       // the whole of it
    std::vector<std::pair<int, int>> descriptors;  // ours, and the number it gets in the child
    bool noProcessSlots = false;                   // the system refuses it every further process, but no thread
};

struct ExitStatus {
    enum class Kind { status, signal };
    Kind kind = Kind::status;
    int number = 0;
    bool operator==(const ExitStatus&) const = default;
};

// Killed and reaped at the end of its life, if not ended before.
class ChildProcess {
  public:
    ChildProcess() = default;
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    // Starts the process, once, with the descriptors named and nothing else of ours; what is not named of standard
    // input, output and error is /dev/null. Returns what went wrong, or nothing. The process is killed when the calling
    // thread ends, so call it on the main thread.
    [[nodiscard]] std::optional<std::string> start(const Launch& launch);

    pid_t pid() const { return pid_; }
    std::optional<ExitStatus> waitForExit(std::chrono::milliseconds limit = patience);
    void signal(int number);  // does nothing after the exit
    void end();               // asks with SIGTERM, insists with SIGKILL

  private:
    pid_t pid_ = 0;
    Descriptor watch_;
    std::optional<ExitStatus> exit_;
};

}  // namespace end_to_end
