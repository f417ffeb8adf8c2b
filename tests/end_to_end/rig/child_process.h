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
    std::vector<std::string> arguments;            // without argv[0]
    Environment environment;                       // complete, nothing is inherited
    std::vector<std::pair<int, int>> descriptors;  // our descriptor and its number in the child
    bool noProcessSlots = false;                   // fork fails in the child, threads still start
};

struct ExitStatus {
    enum class Kind { status, signal };
    Kind kind = Kind::status;
    int number = 0;
    bool operator==(const ExitStatus&) const = default;
};
inline constexpr ExitStatus success{};

struct Pipe {
    Pipe();
    Descriptor reader;
    Descriptor writer;
};

// The destructor kills and reaps the process.
class ChildProcess {
  public:
    ChildProcess() = default;
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    // Starts the process; call it once. The child gets only the descriptors named, and /dev/null for each standard
    // stream not named. Throws std::runtime_error if it can't be started. Call it on the main thread: the child is
    // killed when the calling thread ends.
    void start(const Launch& launch);

    pid_t pid() const { return pid_; }
    std::optional<ExitStatus> waitForExit(std::chrono::milliseconds limit = patience);
    void signal(int number);  // does nothing after the exit
    void end();               // sends SIGTERM, and SIGKILL if that does not end it

  private:
    pid_t pid_ = 0;
    Descriptor watch_;
    std::optional<ExitStatus> exit_;
};

}  // namespace end_to_end
