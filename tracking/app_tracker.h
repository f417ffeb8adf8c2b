// Reports of installs and usages to the website.
#pragma once

#include <string>

// Without state; never constructed. Nothing here fails its caller: what goes wrong stands in the log. Main thread only.
class AppTracker {
  public:
    AppTracker() = delete;

    // Reports an install and then a usage to the website whose base URL (as a person typed it) is `url`: both at every
    // call, since telling the first from the later ones is the website's business. Blocks until the install report is
    // answered or nothing of it has moved for 10 seconds, and leaves the usage report under way. The wait has no other
    // limit: a website that sends a byte now and then prolongs it.
    static void trackUsage(const std::string& url);

    // Reports an install and waits for the answer.
    static void trackInstall(const std::string& url);

    // The id of this device: the one stored, whatever text it is, or else the machine's own UUID, stored from then on.
    [[nodiscard]] static std::string getDeviceId();

    // The machine's own UUID, or a random one when the machine does not tell.
    [[nodiscard]] static std::string getMachineUUID();

  private:
    // Reports a usage and does not wait.
    static void trackUsageOnly(const std::string& url, const std::string& deviceId);
};
