// URLs judged by Boost.URL.
#include "platform/url.h"

#include <algorithm>
#include <boost/url/parse.hpp>
#include <boost/url/url_view.hpp>
#include <utility>

namespace platform {

namespace {

struct Authority {
    std::string_view user;
    std::string_view host;
    std::string_view port;  // With the colon.
};

// Empty parts where there is no authority.
Authority authorityOf(std::string_view text, std::size_t schemeSize) {
    if (schemeSize > 0) text.remove_prefix(schemeSize + 1);
    if (!text.starts_with("//")) return {};
    text.remove_prefix(2);
    text = text.substr(0, text.find_first_of("/?#"));
    Authority authority;
    if (const std::size_t at = text.rfind('@'); at != std::string_view::npos) {
        authority.user = text.substr(0, at);
        text.remove_prefix(at + 1);
    }
    const std::size_t bracket = text.starts_with('[') ? text.find(']') : std::string_view::npos;
    const std::size_t hostSize =
        bracket != std::string_view::npos ? bracket + 1 : std::min(text.find(':'), text.size());
    authority.host = text.substr(0, hostSize);
    authority.port = text.substr(hostSize);
    return authority;
}

// Some versions of the library accept what others refuse: a second "#" (since 1.83), brackets in the query and a zone
// in an IPv6 address (in 1.92), or anything that follows a host and is no port (before 1.83, which read it as the
// path).
bool breaksTheGrammar(const std::string& text, const boost::urls::url_view& url, const Authority& authority) {
    const auto query = url.encoded_query();
    const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
    const std::string_view port = authority.port;
    return std::count(text.begin(), text.end(), '#') > 1 ||
           std::any_of(query.begin(), query.end(), [](char c) { return c == '[' || c == ']'; }) ||
           authority.user.find_first_of("@[]") != std::string_view::npos ||
           (authority.host.starts_with('[') && authority.host.find('%') != std::string_view::npos) ||
           (!port.empty() && (port.front() != ':' || !std::all_of(port.begin() + 1, port.end(), isDigit)));
}

std::string lowerCased(std::string_view text) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(), [](char letter) {
        return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
    });
    return result;
}

}  // namespace

std::optional<Url> Url::parse(std::string text) {
    // To the grammar, the empty text is a reference to the current document; there is none here.
    if (text.empty()) return std::nullopt;
    const auto url = boost::urls::parse_uri_reference(text);
    if (!url) return std::nullopt;
    const std::string scheme = lowerCased(std::string_view(url->scheme().data(), url->scheme().size()));
    const Authority authority = authorityOf(text, scheme.size());
    if (breaksTheGrammar(text, *url, authority)) return std::nullopt;
    std::string host(authority.host);
    return Url(std::move(text), scheme, std::move(host));
}

}  // namespace platform
