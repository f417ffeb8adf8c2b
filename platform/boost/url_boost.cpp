// URLs judged by Boost.URL.
#include "platform/url.h"

#include <algorithm>
#include <boost/url/parse.hpp>
#include <boost/url/url_view.hpp>
#include <utility>

namespace platform {

namespace {

// Some versions of the library accept what the grammar forbids: a second '#' (since 1.83), brackets in the query (in
// 1.92), or a port that is no number (before 1.83, which read its letters as the path).
bool breaksTheGrammar(const std::string& text, const boost::urls::url_view& url) {
    const auto query = url.encoded_query();
    const auto path = url.encoded_path();
    return std::count(text.begin(), text.end(), '#') > 1 ||
           std::any_of(query.begin(), query.end(), [](char c) { return c == '[' || c == ']'; }) ||
           (url.has_authority() && !path.empty() && path.front() != '/');
}

}  // namespace

std::optional<Url> Url::parse(std::string text) {
    // The grammar takes the empty text as a reference to the document at hand, of which there is none here.
    if (text.empty()) return std::nullopt;
    const auto url = boost::urls::parse_uri_reference(text);
    if (!url || breaksTheGrammar(text, *url)) return std::nullopt;
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
