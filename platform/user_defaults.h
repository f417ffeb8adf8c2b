// The user's own store of small values, kept from start to start.
#pragma once

#include <optional>
#include <string>

namespace platform::userDefaults {

// All of these are safe from any thread, and none fails: where the store cannot be read or written, values live as long
// as the process. A value set is seen at once by this process, and on disk (or with the system's daemon) when the call
// returns.

// The text under `key`: a string as it is, the empty one included, a number or a boolean in its text form ("1" or "0"
// for a boolean). Absent when the key is, or when it holds a list, a date or bytes.
[[nodiscard]] std::optional<std::string> string(const std::string& key);

void setString(const std::string& key, const std::string& value);

void setBool(const std::string& key, bool value);

// Stores `value` unless the key has a text by now, and returns the text the key has after that. Two processes that do
// this at the same moment get the same text.
[[nodiscard]] std::string setStringIfAbsent(const std::string& key, const std::string& value);

}  // namespace platform::userDefaults
