#include "platform/machine_uuid.h"
#include "platform/user_defaults.h"
#include "platform/uuid.h"
#include "tracking/app_tracker.h"

namespace {

constexpr const char* deviceIdKey = "com.velmora.device_id";

}  // namespace

std::string AppTracker::getDeviceId() {
    // Even an empty text is used: an id that changes is worse than an odd one.
    if (const std::optional<std::string> stored = platform::userDefaults::string(deviceIdKey)) return *stored;

    std::string id = getMachineUUID();
    platform::userDefaults::setString(deviceIdKey, id);
    return id;
}

std::string AppTracker::getMachineUUID() {
    if (const std::optional<std::string> uuid = platform::platformUuid()) return *uuid;
    return platform::randomUuid();
}
