// The program under test, started as from a terminal.
#pragma once

#include <chrono>
#include <condition_variable>
#include <csignal>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "tests/end_to_end/rig/child_process.h"

namespace end_to_end {

enum class Stream { output, error };

// Started at once, killed and reaped at the end of its life. The operations are for the main thread.
class Program {
  public:
    struct Setting {
        std::string path;
        Environment environment;
        std::vector<std::string> arguments = {};
        bool noProcessSlots = false;  // as in Launch
    };

    explicit Program(const Setting& setting);
    ~Program();
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    // Why it could not be started, or nothing.
    const std::optional<std::string>& failure() const { return failure_; }

    pid_t pid() const { return process_.pid(); }

    // What it has written so far.
    std::string bytes(Stream stream) const;
    // Its whole lines on standard output so far, without their line feeds.
    std::vector<std::string> log() const;

    // Waits for a line on standard output; returns the first there is, also when it is an old one. Absent after the
    // limit, and once the program has closed its output.
    std::optional<std::string> waitForLine(const std::function<bool(std::string_view)>& matches,
                                           std::chrono::milliseconds limit = patience) const;
    bool waitForLine(std::string_view line, std::chrono::milliseconds limit = patience) const;

    // Absent when it still runs after the limit. After the exit, all that it has written has been read.
    std::optional<ExitStatus> waitForExit(std::chrono::milliseconds limit = patience);

    void signal(int number) { process_.signal(number); }
    void terminate() { signal(SIGTERM); }

  private:
    struct Source {
        Descriptor reader;
        std::string bytes;
        bool open = false;
    };

    void readAll();
    void receive(Source& source);
    void stopReading();

    std::optional<std::string> failure_;
    ChildProcess process_;
    Descriptor stop_;
    mutable std::mutex mutex_;
    mutable std::condition_variable changed_;
    Source output_;
    Source error_;
    std::thread reader_;
};

}  // namespace end_to_end
