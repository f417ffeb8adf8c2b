// JSON read and written by Boost.JSON.
#include "platform/json.h"

#ifdef __APPLE__
#include <xlocale.h>
#endif

#include <algorithm>
#include <boost/json/basic_parser_impl.hpp>
#include <boost/json/serialize.hpp>
#include <boost/json/value.hpp>
#include <boost/system/error_code.hpp>
#include <clocale>
#include <cmath>
#include <cstdlib>
#include <utility>

#include "platform/text.h"

namespace platform {

namespace {

namespace json = boost::json;
using boost::system::error_code;

// Infinite when it is too large. Not strtod, whose decimal point is the locale's.
double nearestDouble(const std::string& text) {
    static const locale_t noLocale = newlocale(LC_ALL_MASK, "C", nullptr);
    return strtod_l(text.c_str(), nullptr, noLocale);
}

// Keeps the members of the outermost object while the parser reads. The library's own document would keep everything,
// and the last of two members of one name, where the first is the one that counts.
class Reader {
  public:
    static constexpr std::size_t max_object_size = static_cast<std::size_t>(-1);
    static constexpr std::size_t max_array_size = static_cast<std::size_t>(-1);
    static constexpr std::size_t max_key_size = static_cast<std::size_t>(-1);
    static constexpr std::size_t max_string_size = static_cast<std::size_t>(-1);

    explicit Reader(std::span<const std::string_view> keys) : keys_(keys) {}

    [[nodiscard]] JsonObject takeObject() { return std::move(object_); }

    bool on_document_begin(error_code&) { return true; }
    bool on_document_end(error_code&) { return true; }

    bool on_array_begin(error_code& error) { return open(false, error); }
    bool on_array_end(std::size_t, error_code&) { return close(); }
    bool on_object_begin(error_code& error) { return open(true, error); }
    bool on_object_end(std::size_t, error_code&) { return close(); }

    bool on_key_part(json::string_view part, std::size_t, error_code&) {
        if (depth_ == 1) gather(part);
        return true;
    }
    bool on_key(json::string_view part, std::size_t, error_code&) {
        if (depth_ != 1) return true;
        gather(part);
        key_ = std::exchange(gathered_, {});
        const bool isAskedFor = std::find(keys_.begin(), keys_.end(), key_) != keys_.end();
        keeps_ = keys_.empty() || (isAskedFor && object_.find(key_) == nullptr);
        return true;
    }
    bool on_string_part(json::string_view part, std::size_t, error_code&) {
        if (isMember()) gather(part);
        return true;
    }
    bool on_string(json::string_view part, std::size_t, error_code& error) {
        if (isMember()) gather(part);
        return place(std::exchange(gathered_, {}), error);
    }

    // A number is read from its text here. The library's own reading of it differs from version to version, in the last
    // digits and at the edges of 64 bits.
    bool on_number_part(json::string_view part, error_code&) {
        gather(part);
        return true;
    }
    bool on_int64(std::int64_t, json::string_view part, error_code& error) { return placeNumber(part, error); }
    bool on_uint64(std::uint64_t, json::string_view part, error_code& error) { return placeNumber(part, error); }
    bool on_double(double, json::string_view part, error_code& error) { return placeNumber(part, error); }
    bool on_bool(bool boolean, error_code& error) { return place(JsonValue::Content(boolean), error); }
    bool on_null(error_code& error) { return place(JsonValue::Content(nullptr), error); }

    bool on_comment_part(json::string_view, error_code&) { return true; }
    bool on_comment(json::string_view, error_code&) { return true; }

  private:
    [[nodiscard]] bool isMember() const { return depth_ == 1 && keeps_; }

    void gather(json::string_view part) { gathered_.append(part.data(), part.size()); }

    bool open(bool isObject, error_code& error) {
        if (depth_ == 0 && !isObject) return refuse(error);
        if (isMember()) object_.add(std::move(key_), JsonValue::Content(JsonContainer{}));
        ++depth_;
        return true;
    }

    bool close() {
        --depth_;
        return true;
    }

    bool placeNumber(json::string_view part, error_code& error) {
        gather(part);
        const std::string text = std::exchange(gathered_, {});
        if (const std::optional<std::int64_t> integer = integerFrom(text)) return place(*integer, error);
        const double number = nearestDouble(text);
        if (!std::isfinite(number)) return refuse(error);
        return place(JsonValue::Content(number), error);
    }

    bool place(JsonValue value, error_code& error) {
        if (depth_ == 0) return refuse(error);
        if (isMember()) object_.add(std::move(key_), std::move(value));
        return true;
    }

    static bool refuse(error_code& error) {
        error = json::error::syntax;
        return false;
    }

    std::span<const std::string_view> keys_;
    JsonObject object_;
    std::size_t depth_ = 0;  // Of open arrays and objects.
    std::string key_;        // Of the member whose value comes next,
    bool keeps_ = false;     // and whether it is kept.
    std::string gathered_;
};

// What a JSON text is written in: told by its byte order mark, or else by where the zero bytes of its first two
// characters stand, both of which are ASCII in any JSON text.
std::optional<UnicodeEncoding> wideEncodingOf(std::string_view bytes) {
    const auto startsWith = [bytes](std::string_view mark) { return bytes.substr(0, mark.size()) == mark; };
    using namespace std::string_view_literals;
    if (startsWith("\xFF\xFE\0\0"sv)) return UnicodeEncoding::utf32LittleEndian;
    if (startsWith("\0\0\xFE\xFF"sv)) return UnicodeEncoding::utf32BigEndian;
    if (startsWith("\xFF\xFE"sv)) return UnicodeEncoding::utf16LittleEndian;
    if (startsWith("\xFE\xFF"sv)) return UnicodeEncoding::utf16BigEndian;
    const auto isZero = [bytes](std::size_t index) { return index < bytes.size() && bytes[index] == '\0'; };
    if (bytes.size() >= 4 && isZero(0) && isZero(1) && isZero(2)) return UnicodeEncoding::utf32BigEndian;
    if (bytes.size() >= 4 && isZero(1) && isZero(2) && isZero(3)) return UnicodeEncoding::utf32LittleEndian;
    if (isZero(0)) return UnicodeEncoding::utf16BigEndian;
    if (isZero(1)) return UnicodeEncoding::utf16LittleEndian;
    return std::nullopt;
}

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

// As much of the beginning as can be converted on its own: whole units, and no half of a surrogate pair at the end.
std::size_t convertiblePart(UnicodeEncoding encoding, std::string_view bytes) {
    constexpr std::size_t most = std::size_t{1} << 16U;
    if (bytes.size() <= most) return bytes.size();
    const bool littleEndian = encoding == UnicodeEncoding::utf16LittleEndian;
    const bool isWide = littleEndian || encoding == UnicodeEncoding::utf16BigEndian;
    const auto upperByte = static_cast<unsigned char>(bytes[littleEndian ? most - 1 : most - 2]);
    return isWide && (upperByte & 0xFCU) == 0xD8U ? most - 2 : most;
}

class Parser {
  public:
    explicit Parser(std::span<const std::string_view> keys) : parser_(options(), keys) {}

    // False when what has come so far is no beginning of a JSON text or, without `more`, no whole one.
    bool read(std::string_view text, bool more) {
        error_code error;
        const std::size_t read = parser_.write_some(more, text.data(), text.size(), error);
        return !error && read == text.size();
    }

    JsonObject takeObject() { return parser_.handler().takeObject(); }

  private:
    static json::parse_options options() {
        json::parse_options options;
        options.max_depth = 512;
        options.allow_trailing_commas = true;
        return options;
    }

    json::basic_parser<Reader> parser_;
};

// In parts, so that there is no second copy of a large text.
bool readConverted(UnicodeEncoding encoding, std::string_view bytes, Parser& parser) {
    bool isFirst = true;
    while (!bytes.empty()) {
        const std::size_t size = convertiblePart(encoding, bytes);
        const std::optional<std::string> part = textFrom(encoding, bytes.substr(0, size));
        if (!part) return false;
        bytes.remove_prefix(size);
        std::string_view text = *part;
        if (isFirst && text.starts_with(byteOrderMark)) text.remove_prefix(byteOrderMark.size());
        if (!parser.read(text, !bytes.empty())) return false;
        isFirst = false;
    }
    return true;
}

// Absent when it cannot be written.
std::optional<json::value> writable(const JsonValue& value) {
    if (const auto* text = std::get_if<std::string>(&value.content())) {
        return isUtf8(*text) ? std::optional<json::value>(json::string(*text)) : std::nullopt;
    }
    if (const auto* number = std::get_if<double>(&value.content())) {
        return std::isfinite(*number) ? std::optional<json::value>(*number) : std::nullopt;
    }
    if (const auto* integer = std::get_if<std::int64_t>(&value.content())) return json::value(*integer);
    if (const auto* boolean = std::get_if<bool>(&value.content())) return json::value(*boolean);
    if (std::holds_alternative<std::nullptr_t>(value.content())) return json::value(nullptr);
    return std::nullopt;
}

}  // namespace

std::optional<std::string> jsonDataFrom(const JsonObject& object) {
    json::object written;
    for (const auto& [key, member] : object.members()) {
        std::optional<json::value> value = writable(member);
        if (!value || !isUtf8(key)) return std::nullopt;
        written.emplace(key, std::move(*value));
    }
    return json::serialize(written);
}

std::optional<JsonObject> jsonObjectFrom(std::string_view bytes, std::span<const std::string_view> keys) {
    Parser parser(keys);
    bool isWhole = false;
    if (const std::optional<UnicodeEncoding> wide = wideEncodingOf(bytes)) {
        isWhole = readConverted(*wide, bytes, parser);
    } else {
        if (bytes.starts_with(byteOrderMark)) bytes.remove_prefix(byteOrderMark.size());
        isWhole = parser.read(bytes, false);
    }
    if (!isWhole) return std::nullopt;
    return parser.takeObject();
}

}  // namespace platform
