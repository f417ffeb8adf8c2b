// The user's own store of small values, kept from start to start.
#pragma once

#include <optional>
#include <string>

namespace platform::userDefaults {

// One thread at a time. None of these fails: where the store cannot be read or written, values live as long as the
// process. A value set is seen at once by this process, and on disk (or with the system's daemon) when the call
// returns. When two processes set the same key, the last one stays.

// The string under `key`, which may be empty. Absent when the key is, or when it holds anything else: a number, a list,
// a date, bytes. Where a stored value has no type, whatever reads as one plain text is a string.
[[nodiscard]] std::optional<std::string> string(const std::string& key);

void setString(const std::string& key, const std::string& value);

void setBool(const std::string& key, bool value);

}  // namespace platform::userDefaults
