// The pages of the stand-in website, as whole HTML documents in UTF-8. All functions are pure.
#pragma once

#include <string>

#include "website_stand_in/records.h"

namespace websiteStandIn {

[[nodiscard]] std::string startPage(const Records& records);
[[nodiscard]] std::string machinePage(const Machine& machine);
[[nodiscard]] std::string unknownMachinePage();

}  // namespace websiteStandIn
