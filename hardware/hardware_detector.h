// Detects the computer's hardware and sends it to the website.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "hardware/hardware_info.h"

// Without state; never constructed.
class HardwareDetector {
  public:
    HardwareDetector() = delete;

    // Runs up to five system commands, one after another, and returns what they report; the other fields have fixed
    // values. Never fails. Blocks until the commands have ended, without limit: call it off the main thread. Two calls
    // may run at once.
    [[nodiscard]] static HardwareInfo detect();

    // Posts the record to the website with the base URL `url` (as typed), waits for the answer, and returns whether the
    // website accepted it. The main queue opens the page that the answer names, before anything that the caller posts
    // there afterwards. Failures are logged. Blocks until the request has ended or was idle for 60 seconds: call it off
    // the main thread.
    [[nodiscard]] static bool sendToWebsite(const std::string& url, const HardwareInfo& hardware);

  private:
    // What the command printed on standard output, unchanged. Absent when it could not be started or its output is not
    // UTF-8. Its exit status is ignored.
    [[nodiscard]] static std::optional<std::string> runCommand(const std::string& path,
                                                               const std::vector<std::string>& arguments);
};
