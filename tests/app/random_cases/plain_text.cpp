#include "tests/app/random_cases/plain_text.h"

namespace randomCases {

bool isBlank(char32_t c) {
    return c == ' ' || c == '\t' || c == 0xA0 || c == 0x1680 || (c >= 0x2000 && c <= 0x200A) || c == 0x202F ||
           c == 0x205F || c == 0x3000;
}

bool isLineBreak(char32_t c) { return (c >= 0x0A && c <= 0x0D) || c == 0x85 || c == 0x2028 || c == 0x2029; }

bool isBlankOrLineBreak(char32_t c) { return isBlank(c) || isLineBreak(c); }

Text trimmed(Text text, bool (*isTrimmed)(char32_t)) {
    while (!text.empty() && isTrimmed(text.back())) text.pop_back();
    while (!text.empty() && isTrimmed(text.front())) text.erase(0, 1);
    return text;
}

std::optional<std::int64_t> integer(const Text& text) {
    const bool negative = !text.empty() && text[0] == '-';
    Text digits = text.substr(negative || (!text.empty() && text[0] == '+') ? 1 : 0);
    if (digits.empty()) return std::nullopt;
    for (const char32_t digit : digits) {
        if (digit < '0' || digit > '9') return std::nullopt;
    }
    while (digits.size() > 1 && digits[0] == '0') digits.erase(0, 1);
    const Text largest = negative ? U"9223372036854775808" : U"9223372036854775807";
    if (digits.size() > largest.size() || (digits.size() == largest.size() && digits > largest)) return std::nullopt;
    return std::stoll((negative ? "-" : "") + encoded(digits));
}

std::string jsonString(const std::string& text) {
    std::string json = "\"";
    for (const char c : text) {
        switch (c) {
            case '"': json += "\\\""; break;
            case '\\': json += "\\\\"; break;
            case '\n': json += "\\n"; break;
            case '\r': json += "\\r"; break;
            case '\t': json += "\\t"; break;
            default: json += c;
        }
    }
    return json + "\"";
}

std::optional<std::string> stringIn(const std::string& json) {
    if (json.empty() || json[0] != '"') return std::nullopt;
    Text text;
    const Text inside = *decoded(json.substr(1, json.size() - 2));
    for (std::size_t at = 0; at < inside.size(); ++at) {
        if (inside[at] != U'\\') {
            text += inside[at];
        } else if (inside[++at] == U'n') {
            text += U'\n';
        } else if (inside[at] == U'u') {
            const auto unit = static_cast<char32_t>(std::stoul(encoded(inside.substr(at + 1, 4)), nullptr, 16));
            const bool continuesPair = unit >= 0xDC00 && unit < 0xE000;
            if (continuesPair) {
                text.back() = 0x10000 + ((text.back() - 0xD800) << 10U) + (unit - 0xDC00);
            } else {
                text += unit;
            }
            at += 4;
        } else {
            text += inside[at];
        }
    }
    return encoded(text);
}

}  // namespace randomCases
