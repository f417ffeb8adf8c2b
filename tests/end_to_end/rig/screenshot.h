// Saves and checks pictures of a display.
#pragma once

#include <string>

namespace end_to_end {

// Saves the whole display as a PNG file. False if the display can't be read or the file can't be written.
bool saveScreenshot(const std::string& display, const std::string& file);

// True if a picture shows the program's window, by the blue of its button in the light appearance.
bool showsTheBlueButton(const std::string& file);

}  // namespace end_to_end
