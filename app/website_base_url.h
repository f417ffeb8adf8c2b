// The website's address that is built into the program.
#pragma once

#include <string_view>

// An absolute address without a trailing "/". Set by the CMake cache variable HARDWARE_DETECTOR_BASE_URL.
[[nodiscard]] std::string_view websiteBaseUrl();
