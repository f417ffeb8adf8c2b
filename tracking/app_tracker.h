// Reports of installs and usages to the website.
#pragma once

#include <string>

// Without state; never constructed. Failures are only logged. Main thread only.
class AppTracker {
  public:
    AppTracker() = delete;

    // Reports an install and then a usage to the website with the base URL `url` (as typed), at every call: the website
    // recognises repetitions. Blocks until the install report is answered or was idle for 10 seconds (each byte
    // restarts the interval), and does not wait for the usage report.
    static void trackUsage(const std::string& url);

    // Reports an install and waits for the answer.
    static void trackInstall(const std::string& url);

    // The stored id, whatever text it is, or else the machine's UUID, which is then stored.
    [[nodiscard]] static std::string getDeviceId();

    // The machine's UUID, or a random one where it is unknown.
    [[nodiscard]] static std::string getMachineUUID();

  private:
    // Reports a usage and does not wait.
    static void trackUsageOnly(const std::string& url, const std::string& deviceId);
};
