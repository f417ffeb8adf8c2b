// Typed addresses, and the endpoints and pages made from them.
#include "platform/url.h"

#include <fuzzer/FuzzedDataProvider.h>

#include <algorithm>

#include "platform/text.h"
#include "submit/page_to_open.h"
#include "tests/fuzz/require.h"

namespace {

void checkUrl(const std::string& text) {
    const auto url = platform::Url::parse(text);
    if (!url) return;
    fuzz::require(url->absoluteString() == text, "the URL is not the text");
    fuzz::require(std::all_of(text.begin(), text.end(), [](char c) { return c > ' ' && c < 0x7F; }),
                  "a URL with a blank, a control or a non-ASCII character");
    const std::string scheme = url->scheme();
    fuzz::require(scheme.empty() || text.find(':') == scheme.size(), "the scheme does not end at the first colon");
    fuzz::require(text.find(url->host()) != std::string::npos, "a host that is not in the text");
}

void checkEndpoint(const std::string& text) {
    const std::string_view trimmed = platform::trimmedOfSlashes(text);
    fuzz::require(trimmed.empty() || (trimmed.front() != '/' && trimmed.back() != '/'), "a slash is left at an end");
    fuzz::require(text.find(trimmed) != std::string::npos, "more than slashes is removed");
    checkUrl(std::string(trimmed) + "/api/track-usage/");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider provider(data, size);
    const std::string typed = provider.ConsumeRandomLengthString();
    const std::string redirect = provider.ConsumeRandomLengthString();
    const std::string id = provider.ConsumeRemainingBytesAsString();
    checkUrl(typed);
    checkUrl(redirect);
    checkEndpoint(typed);

    // The page's scheme is http, https or the typed address's.
    const PageToOpen choice = pageToOpen({{"redirect_url", redirect}, {"hardware_id", id}}, typed);
    if (choice.page) {
        const std::string scheme = choice.page->scheme();
        const auto own = platform::Url::parse(typed);
        const bool isOwn = own && scheme == own->scheme();
        const bool isRelativeToTyped =
            choice.page->absoluteString().starts_with(std::string(platform::trimmedOfSlashes(typed)));
        fuzz::require(scheme == "http" || scheme == "https" || isOwn || isRelativeToTyped, "a page of another scheme");
    }
    return 0;
}
