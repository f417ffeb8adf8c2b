// Text by Qt: its decoders and its regular expressions. The white-space tables are our own, because the toolkit's
// notion of white space includes line breaks.
#include "platform/text.h"

#include <QRegularExpression>
#include <QString>
#include <QStringDecoder>
#include <algorithm>
#include <charconv>

namespace platform {

namespace {

QStringConverter::Encoding toolkitEncoding(UnicodeEncoding encoding) {
    switch (encoding) {
        case UnicodeEncoding::utf16LittleEndian: return QStringConverter::Utf16LE;
        case UnicodeEncoding::utf16BigEndian: return QStringConverter::Utf16BE;
        case UnicodeEncoding::utf32LittleEndian: return QStringConverter::Utf32LE;
        case UnicodeEncoding::utf32BigEndian: return QStringConverter::Utf32BE;
    }
    return QStringConverter::Utf8;
}

std::size_t unitSize(UnicodeEncoding encoding) {
    const bool isUtf16 = encoding == UnicodeEncoding::utf16LittleEndian || encoding == UnicodeEncoding::utf16BigEndian;
    return isUtf16 ? 2 : 4;
}

bool isWhitespace(char32_t character) {
    return character == U'\t' || character == U' ' || character == U'\u00A0' || character == U'\u1680' ||
           (character >= U'\u2000' && character <= U'\u200A') || character == U'\u202F' || character == U'\u205F' ||
           character == U'\u3000';
}

bool isNewline(char32_t character) {
    return (character >= U'\n' && character <= U'\r') || character == U'\u0085' || character == U'\u2028' ||
           character == U'\u2029';
}

bool isWhitespaceOrNewline(char32_t character) { return isWhitespace(character) || isNewline(character); }

struct Character {
    char32_t value;
    std::size_t length;  // In bytes.
};

bool isContinuation(char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U; }

// The character that starts at `position`. A byte that starts none counts as a character of its own that no table
// holds, so that broken text is passed through and never read beyond its end.
Character characterAt(std::string_view text, std::size_t position) {
    const auto byte = [text, position](std::size_t offset) {
        return static_cast<char32_t>(static_cast<unsigned char>(text[position + offset]));
    };
    const char32_t first = byte(0);
    const std::size_t length = first < 0x80 ? 1 : first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
    if (length == 1 || position + length > text.size()) return {first < 0x80 ? first : U'\uFFFD', 1};
    char32_t value = first & (0x7FU >> length);
    for (std::size_t offset = 1; offset < length; ++offset) {
        if (!isContinuation(text[position + offset])) return {U'\uFFFD', 1};
        value = (value << 6U) | (byte(offset) & 0x3FU);
    }
    return {value, length};
}

// The character that ends at `end`.
Character characterBefore(std::string_view text, std::size_t end) {
    std::size_t start = end - 1;
    while (start > 0 && end - start < 4 && isContinuation(text[start])) --start;
    const Character character = characterAt(text, start);
    return character.length == end - start ? character : Character{U'\uFFFD', 1};
}

std::string_view trimmed(std::string_view text, bool (*isTrimmed)(char32_t)) {
    while (!text.empty()) {
        const Character first = characterAt(text, 0);
        if (!isTrimmed(first.value)) break;
        text.remove_prefix(first.length);
    }
    while (!text.empty()) {
        const Character last = characterBefore(text, text.size());
        if (!isTrimmed(last.value)) break;
        text.remove_suffix(last.length);
    }
    return text;
}

// The engine's own "\s" knows ASCII only, and with its Unicode switch one character too many (U+180E).
QString inTheEnginesSyntax(std::string_view pattern) {
    QString translated = QString::fromUtf8(pattern.data(), static_cast<qsizetype>(pattern.size()));
    translated.replace(QStringLiteral("\\s"), QStringLiteral("[\\t-\\r\\x{85}\\p{Z}]"));
    return QStringLiteral("(*ANY)") + translated;  // "." stops at every line break, not at line feeds alone.
}

}  // namespace

bool isUtf8(std::string_view bytes) {
    return QUtf8StringView(bytes.data(), static_cast<qsizetype>(bytes.size())).isValidUtf8();
}

std::optional<std::string> textFrom(UnicodeEncoding encoding, std::string_view bytes) {
    if (bytes.size() % unitSize(encoding) != 0) return std::nullopt;  // The decoder would put a mark in its place.
    QStringDecoder decoder(toolkitEncoding(encoding),
                           QStringConverter::Flag::Stateless | QStringConverter::Flag::ConvertInitialBom);
    const QString text = decoder(QByteArrayView(bytes.data(), static_cast<qsizetype>(bytes.size())));
    if (decoder.hasError() || !text.isValidUtf16()) return std::nullopt;
    return text.toStdString();
}

std::string_view trimmedOfWhitespace(std::string_view text) { return trimmed(text, isWhitespace); }

std::string_view trimmedOfWhitespaceAndNewlines(std::string_view text) { return trimmed(text, isWhitespaceOrNewline); }

std::string_view trimmedOfSlashes(std::string_view text) {
    return trimmed(text, [](char32_t character) { return character == U'/'; });
}

std::vector<std::string_view> columnsOf(std::string_view text) {
    std::vector<std::string_view> columns;
    std::size_t start = 0;
    std::size_t position = 0;
    const auto endColumn = [&] {
        if (position > start) columns.push_back(text.substr(start, position - start));
    };
    while (position < text.size()) {
        const Character character = characterAt(text, position);
        if (isWhitespace(character.value)) {
            endColumn();
            start = position + character.length;
        }
        position += character.length;
    }
    endColumn();
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

std::optional<std::string> firstMatch(std::string_view pattern, std::string_view text) {
    const QRegularExpression expression(inTheEnginesSyntax(pattern));
    const QString subject = QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
    const QRegularExpressionMatch match = expression.match(subject);
    if (!match.hasMatch()) return std::nullopt;
    return match.captured(0).toStdString();
}

}  // namespace platform
