// The user's own store of small values, kept from start to start.
#pragma once

#include <optional>
#include <string>

namespace platform::userDefaults {

// Used by one thread at a time. None of these fails: where the store cannot be read or written, values last as long as
// the process. A value is on disk (or with the system's daemon) when the call that sets it returns. When two processes
// set the same key, the last one stays.

// The string under `key`, which may be empty. Absent when there is none or the value has another type. In a store
// without types, every single plain value is a string.
[[nodiscard]] std::optional<std::string> string(const std::string& key);

void setString(const std::string& key, const std::string& value);

void setBool(const std::string& key, bool value);

}  // namespace platform::userDefaults
