// Pages opened by Launch Services. The toolkit's own function would rewrite the URL.
#include "platform/browser.h"

#include <CoreServices/CoreServices.h>

#include <string>

#include "platform/mac/core_foundation.h"

namespace platform {

bool openInBrowser(const Url& url) {
    if (url.scheme().empty()) return false;
    const std::string& text = url.absoluteString();
    const coreFoundation::Owned<CFURLRef> location(
        CFURLCreateWithBytes(kCFAllocatorDefault, reinterpret_cast<const UInt8*>(text.data()),
                             static_cast<CFIndex>(text.size()), kCFStringEncodingUTF8, nullptr));
    return location && LSOpenCFURLRef(location.get(), nullptr) == noErr;
}

}  // namespace platform
