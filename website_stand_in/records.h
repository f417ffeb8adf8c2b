// The data that the stand-in website has received since its start.
#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace websiteStandIn {

struct Machine {
    std::string profileName;
    std::string os;
    std::string processor;
    std::string graphicsCard;
    std::int64_t ramGb = 0;
    std::string ramType;
    std::int64_t ramFrequency = 0;
    std::int64_t storageGb = 0;
    std::string storageType;
    std::string directxVersion;
    std::int64_t gpuMemory = 0;  // In gigabytes.
};

struct Records {
    std::vector<Machine> machines;                              // The first one's hardware_id is 1.
    std::set<std::string> installs;                             // Device ids.
    std::map<std::string, std::vector<std::string>> daysOfUse;  // By device id: the date of each report.
};

}  // namespace websiteStandIn
