#include "app/website_base_url.h"

std::string_view websiteBaseUrl() { return WEBSITE_BASE_URL; }
