// Pages opened by Launch Services. The toolkit's own function would rewrite the URL.
#include "platform/browser.h"

#include <CoreServices/CoreServices.h>

#include "platform/mac/core_foundation.h"

namespace platform {

bool openInBrowser(const Url& url) {
    if (url.scheme().empty()) return false;
    const coreFoundation::Owned<CFURLRef> location = coreFoundation::cfUrl(url.absoluteString());
    return location && LSOpenCFURLRef(location.get(), nullptr) == noErr;
}

}  // namespace platform
