#include "tests/support/recorded_request.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>

namespace testSupport {

namespace {

constexpr std::string_view headerEnd = "\r\n\r\n";

bool equalIgnoringCase(std::string_view left, std::string_view right) {
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [](unsigned char a, unsigned char b) { return std::tolower(a) == std::tolower(b); });
}

std::string_view withoutBlanks(std::string_view text) {
    const std::size_t first = text.find_first_not_of(" \t");
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

}  // namespace

bool RecordedRequest::isWhole() const {
    if (bytes.empty()) return false;
    if (std::isupper(static_cast<unsigned char>(bytes.front())) == 0) return true;
    const std::size_t end = bytes.find(headerEnd);
    if (end == std::string::npos) return false;
    const auto lengths = valuesOf("Content-Length");
    const std::size_t bodySize = lengths.empty() ? 0 : std::strtoull(lengths.front().c_str(), nullptr, 10);
    return bytes.size() - end - headerEnd.size() >= bodySize;
}

std::string RecordedRequest::requestLine() const { return bytes.substr(0, bytes.find("\r\n")); }

std::string RecordedRequest::method() const { return bytes.substr(0, bytes.find(' ')); }

std::string RecordedRequest::target() const {
    const std::string line = requestLine();
    const std::size_t first = line.find(' ');
    const std::size_t last = line.rfind(' ');
    return first == std::string::npos || first == last ? std::string() : line.substr(first + 1, last - first - 1);
}

std::vector<std::string> RecordedRequest::valuesOf(std::string_view fieldName) const {
    std::vector<std::string> values;
    std::string_view rest = std::string_view(bytes).substr(0, bytes.find(headerEnd));
    while (!rest.empty()) {
        const std::string_view line = rest.substr(0, rest.find("\r\n"));
        rest.remove_prefix(std::min(rest.size(), line.size() + 2));
        const std::size_t colon = line.find(':');
        if (colon == std::string_view::npos || !equalIgnoringCase(line.substr(0, colon), fieldName)) continue;
        values.emplace_back(withoutBlanks(line.substr(colon + 1)));
    }
    return values;
}

std::string RecordedRequest::body() const {
    const std::size_t end = bytes.find(headerEnd);
    return end == std::string::npos ? std::string() : bytes.substr(end + headerEnd.size());
}

}  // namespace testSupport
