// A picture of a display.
#pragma once

#include <string>

namespace end_to_end {

// Saves what the whole display shows as a PNG file. False when the display can't be read or the file not written.
bool saveScreenshot(const std::string& display, const std::string& file);

}  // namespace end_to_end
