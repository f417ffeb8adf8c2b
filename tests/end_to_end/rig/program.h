// Runs the program under test and records its output.
#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "tests/end_to_end/rig/child_process.h"

namespace end_to_end {

// The complete lines in `bytes`, without line feeds.
[[nodiscard]] std::vector<std::string> wholeLinesOf(std::string_view bytes);

enum class Stream { output, error };

// The constructor starts the program, or throws; the destructor kills and reaps it. Use it on the main thread.
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

    pid_t pid() const { return process_.pid(); }

    // All output so far.
    std::string bytes(Stream stream) const;
    // The complete lines on standard output so far, without line feeds.
    std::vector<std::string> log() const;

    // Waits for a line on standard output; earlier lines count too. Returns the first match. Absent after the limit, or
    // if the program closes its output.
    std::optional<std::string> waitForLine(const std::function<bool(std::string_view)>& matches,
                                           std::chrono::milliseconds limit = patience) const;
    bool waitForLine(std::string_view line, std::chrono::milliseconds limit = patience) const;

    // Absent if the program still runs after the limit. After the exit bytes() is complete.
    std::optional<ExitStatus> waitForExit(std::chrono::milliseconds limit = patience);

    void signal(int number) { process_.signal(number); }

  private:
    struct Source {
        Descriptor reader;
        std::string bytes;
        bool open = false;
    };

    void readAll();
    void receive(Source& source);
    void stopReading();

    ChildProcess process_;
    Descriptor stop_;
    mutable std::mutex mutex_;
    mutable std::condition_variable changed_;
    Source output_;
    Source error_;
    std::thread reader_;
};

}  // namespace end_to_end
