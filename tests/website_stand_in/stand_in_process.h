// The stand-in website as a process of its own.
#pragma once

#include <sys/types.h>

#include <optional>
#include <string>
#include <vector>

// What it writes is read through pipes. Every wait ends after 30 seconds, as a failure.
class StandInProcess {
  public:
    explicit StandInProcess(const std::vector<std::string>& arguments);
    ~StandInProcess();  // Kills it, if it has not ended.
    StandInProcess(const StandInProcess&) = delete;
    StandInProcess& operator=(const StandInProcess&) = delete;

    // The next line of standard output, without its line break; absent when there is none.
    [[nodiscard]] std::optional<std::string> nextLine();
    // The port that the first line names; absent when it doesn't read as it should.
    [[nodiscard]] std::optional<int> port();

    void signal(int number) const;
    // Its exit status; absent when it doesn't end, or not by itself.
    [[nodiscard]] std::optional<int> waitForExit();
    // All of it. To be called after the exit.
    [[nodiscard]] std::string standardError();

  private:
    class Pipe {
      public:
        Pipe();
        ~Pipe();
        Pipe(const Pipe&) = delete;
        Pipe& operator=(const Pipe&) = delete;

        [[nodiscard]] int writeEnd() const { return writeEnd_; }
        void closeWriteEnd();
        // Waits for more bytes; false at the end of them, or when none come.
        [[nodiscard]] bool fill();

        std::string bytes;   // What has come and was not taken out.
        bool ended = false;  // The end of them was seen.

      private:
        int readEnd_ = -1;
        int writeEnd_ = -1;
    };

    Pipe output_;
    Pipe error_;
    pid_t pid_ = 0;
};
