// Text in C++'s own terms; Boost.Locale judges UTF-8.
#include "platform/text.h"

#include <array>
#include <boost/locale/utf.hpp>
#include <charconv>
#include <span>

namespace platform {

namespace {

using Characters = std::span<const std::string_view>;

constexpr std::array<std::string_view, 25> whitespaceAndNewlines = {
    "\n",     "\v",     "\f",     "\r",     "\u0085", "\u2028", "\u2029",  // The rest is white space.
    "\t",     " ",      "\u00A0", "\u1680", "\u2000", "\u2001", "\u2002", "\u2003", "\u2004",
    "\u2005", "\u2006", "\u2007", "\u2008", "\u2009", "\u200A", "\u202F", "\u205F", "\u3000"};
constexpr Characters whitespace = Characters(whitespaceAndNewlines).subspan(7);
constexpr std::array<std::string_view, 1> slash = {"/"};

// The length of the one of `characters` that `text` starts with; 0 if it starts with none.
std::size_t lengthAtStart(std::string_view text, Characters characters) {
    for (const std::string_view character : characters) {
        if (text.starts_with(character)) return character.size();
    }
    return 0;
}

std::size_t lengthAtEnd(std::string_view text, Characters characters) {
    for (const std::string_view character : characters) {
        if (text.ends_with(character)) return character.size();
    }
    return 0;
}

std::string_view trimmed(std::string_view text, Characters characters) {
    while (const std::size_t length = lengthAtStart(text, characters)) text.remove_prefix(length);
    while (const std::size_t length = lengthAtEnd(text, characters)) text.remove_suffix(length);
    return text;
}

}  // namespace

bool isUtf8(std::string_view bytes) {
    using namespace boost::locale::utf;
    const char* position = bytes.data();
    const char* const end = position + bytes.size();
    while (position != end) {
        if (!is_valid_codepoint(utf_traits<char>::decode(position, end))) return false;
    }
    return true;
}

std::string_view trimmedOfWhitespace(std::string_view text) { return trimmed(text, whitespace); }

std::string_view trimmedOfWhitespaceAndNewlines(std::string_view text) { return trimmed(text, whitespaceAndNewlines); }

std::string_view trimmedOfSlashes(std::string_view text) { return trimmed(text, slash); }

std::vector<std::string_view> columnsOf(std::string_view text) {
    std::vector<std::string_view> columns;
    for (text = trimmedOfWhitespace(text); !text.empty(); text = trimmedOfWhitespace(text)) {
        std::size_t end = 1;
        while (end < text.size() && lengthAtStart(text.substr(end), whitespace) == 0) ++end;
        columns.push_back(text.substr(0, end));
        text.remove_prefix(end);
    }
    return columns;
}

std::vector<std::string_view> piecesOf(std::string_view text, char separator) {
    std::vector<std::string_view> pieces;
    std::size_t start = 0;
    for (std::size_t end = text.find(separator); end != std::string_view::npos; end = text.find(separator, start)) {
        pieces.push_back(text.substr(start, end - start));
        start = end + 1;
    }
    pieces.push_back(text.substr(start));
    return pieces;
}

std::optional<std::int64_t> integerFrom(std::string_view text) {
    // from_chars knows "-" but not "+", and must not be offered the two together.
    if (text.starts_with('+')) {
        text.remove_prefix(1);
        if (text.starts_with('-')) return std::nullopt;
    }
    std::int64_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
    return number;
}

}  // namespace platform
