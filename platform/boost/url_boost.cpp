// URLs judged by Boost.URL.
#include "platform/url.h"

#include <algorithm>
#include <boost/url/parse.hpp>
#include <boost/url/url_view.hpp>
#include <utility>

namespace platform {

std::optional<Url> Url::parse(std::string text) {
    // The grammar takes the empty text as a reference to the document at hand, of which there is none here.
    if (text.empty() || !boost::urls::parse_uri_reference(text)) return std::nullopt;
    return Url(std::move(text));
}

std::string Url::scheme() const {
    std::string scheme = boost::urls::parse_uri_reference(text_)->scheme();
    std::transform(scheme.begin(), scheme.end(), scheme.begin(), [](char letter) {
        return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
    });
    return scheme;
}

std::string Url::host() const {
    const auto host = boost::urls::parse_uri_reference(text_)->encoded_host();
    return std::string(host.data(), host.size());
}

}  // namespace platform
