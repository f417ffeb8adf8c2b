// Finding out what the computer is made of, and handing it to the website.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "hardware/hardware_info.h"

// Without state; never constructed.
class HardwareDetector {
  public:
    HardwareDetector() = delete;

    // Runs up to five commands of the system, one after another, and returns what they tell; whatever they do not tell
    // keeps a fixed value. Never fails. Blocks for as long as the commands take, without limit: call it off the main
    // thread. Two calls may run at once.
    [[nodiscard]] static HardwareInfo detect();

    // Posts the record to the website whose base URL (as a person typed it) is `url`, waits for the answer, and returns
    // whether the website accepted it. The page that the answer names is opened by the main queue, before anything that
    // the caller posts there afterwards. Why it failed stands in the log. Blocks until the exchange is over (the
    // request's 60 idle seconds at most): call it off the main thread.
    [[nodiscard]] static bool sendToWebsite(const std::string& url, const HardwareInfo& hardware);

  private:
    friend struct HardwareDetectorCommands;  // The tests' way to the command runner.

    // What the command printed on standard output, as it is. Absent when it could not be started or printed something
    // that is not UTF-8. Its exit status does not count.
    [[nodiscard]] static std::optional<std::string> runCommand(const std::string& path,
                                                               const std::vector<std::string>& arguments);
};
