// JSON read and written by Boost.JSON.
#include "platform/json.h"

#ifdef __APPLE__
#include <xlocale.h>
#endif

#include <algorithm>
#include <boost/json/basic_parser_impl.hpp>
#include <boost/json/serialize.hpp>
#include <boost/json/value.hpp>
#include <boost/locale/utf.hpp>
#include <boost/system/error_code.hpp>
#include <clocale>
#include <cmath>
#include <cstdlib>
#include <iterator>
#include <utility>

#include "platform/large_text.h"
#include "platform/text.h"

namespace platform {

namespace {

namespace json = boost::json;
namespace utf = boost::locale::utf;
using boost::system::error_code;

// Doubles that may stand for a number beyond 64 bits: the lower one is also the nearest to -9223372036854775809.
constexpr double belowIntegers = -9223372036854775808.0;
constexpr double beyondIntegers = 9223372036854775808.0;

// Infinite when it is too large. Not strtod, whose decimal point is the locale's.
double nearestDouble(const std::string& text) {
    static const locale_t noLocale = newlocale(LC_ALL_MASK, "C", nullptr);
    return strtod_l(text.c_str(), nullptr, noLocale);
}

// Keeps the members of the outermost object while the parser reads. The library's own document would keep everything,
// and of two members with one name the last instead of the first.
class Reader {
  public:
    static constexpr std::size_t max_object_size = static_cast<std::size_t>(-1);
    static constexpr std::size_t max_array_size = static_cast<std::size_t>(-1);
    static constexpr std::size_t max_key_size = static_cast<std::size_t>(-1);
    static constexpr std::size_t max_string_size = static_cast<std::size_t>(-1);

    Reader(std::span<const std::string_view> keys, std::size_t longestText) : keys_(keys), longestText_(longestText) {}

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

    // Numbers are read from their text: versions of the library differ in the last digits and at the limits of 64 bits.
    bool on_number_part(json::string_view part, error_code&) {
        gather(part);
        return true;
    }
    bool on_int64(std::int64_t, json::string_view part, error_code& error) { return placeNumber(part, error); }
    bool on_uint64(std::uint64_t, json::string_view part, error_code& error) { return placeNumber(part, error); }
    bool on_double(double, json::string_view part, error_code& error) { return placeNumber(part, error); }
    bool on_bool(bool boolean, error_code& error) { return place(JsonValue(boolean), error); }
    bool on_null(error_code& error) { return place(JsonValue(nullptr), error); }

    bool on_comment_part(json::string_view, error_code&) { return true; }
    bool on_comment(json::string_view, error_code&) { return true; }

  private:
    [[nodiscard]] bool isMember() const { return depth_ == 1 && keeps_; }

    void gather(json::string_view part) { appendPiece(gathered_, {part.data(), part.size()}, longestText_); }

    bool open(bool isObject, error_code& error) {
        if (depth_ == 0 && !isObject) return refuse(error);
        if (isMember()) object_.add(std::move(key_), JsonValue(JsonContainer{}));
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
        return place(JsonValue(number), error);
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
    std::size_t longestText_;  // In UTF-8, of what the input has room for.
    JsonObject object_;
    std::size_t depth_ = 0;  // Of open arrays and objects.
    std::string key_;        // Of the member whose value comes next.
    bool keeps_ = false;     // Whether that member is kept.
    std::string gathered_;
};

struct Encoding {
    std::size_t unitSize = 1;
    bool isLittleEndian = false;
    std::size_t markSize = 0;
};

// Told by the byte order mark, or else by the zero bytes of the first character, which is ASCII in any JSON text.
Encoding encodingOf(std::string_view bytes) {
    using namespace std::string_view_literals;
    if (bytes.starts_with("\xEF\xBB\xBF"sv)) return {1, false, 3};
    if (bytes.starts_with("\xFF\xFE\0\0"sv)) return {4, true, 4};
    if (bytes.starts_with("\0\0\xFE\xFF"sv)) return {4, false, 4};
    if (bytes.starts_with("\xFF\xFE"sv)) return {2, true, 2};
    if (bytes.starts_with("\xFE\xFF"sv)) return {2, false, 2};
    if (bytes.starts_with("\0\0\0"sv)) return {4, false};
    if (bytes.starts_with("\0"sv)) return {2, false};
    if (bytes.substr(0, 4).find("\0\0\0"sv) == 1) return {4, true};
    if (bytes.substr(0, 2).find('\0') == 1) return {2, true};
    return {};
}

utf::code_point takeUnit(std::string_view& bytes, const Encoding& encoding) {
    utf::code_point unit = 0;
    for (std::size_t index = 0; index < encoding.unitSize; ++index) {
        const std::size_t place = encoding.isLittleEndian ? encoding.unitSize - 1 - index : index;
        unit = (unit << 8U) | static_cast<unsigned char>(bytes[place]);
    }
    bytes.remove_prefix(encoding.unitSize);
    return unit;
}

// A surrogate, which is no valid character, when the text is broken.
utf::code_point takeCharacter(std::string_view& bytes, const Encoding& encoding) {
    const utf::code_point first = takeUnit(bytes, encoding);
    const bool isHighSurrogate = encoding.unitSize == 2 && first >= 0xD800 && first < 0xDC00;
    if (!isHighSurrogate || bytes.empty()) return first;
    const utf::code_point second = takeUnit(bytes, encoding);
    if (second < 0xDC00 || second > 0xDFFF) return first;
    return 0x10000 + ((first - 0xD800) << 10U) + (second - 0xDC00);
}

using Parser = json::basic_parser<Reader>;

// False when the text so far cannot begin a JSON text or, without `more`, is no whole one.
bool read(std::string_view text, bool more, Parser& parser) {
    error_code error;
    const std::size_t read = parser.write_some(more, text.data(), text.size(), error);
    return !error && read == text.size();
}

// In parts, so that there is no second copy of a large text.
bool readConverted(std::string_view bytes, const Encoding& encoding, Parser& parser) {
    constexpr std::size_t partSize = 65536;
    if (bytes.size() % encoding.unitSize != 0) return false;
    do {
        std::string part;
        while (!bytes.empty() && part.size() < partSize) {
            const utf::code_point character = takeCharacter(bytes, encoding);
            if (!utf::is_valid_codepoint(character)) return false;
            utf::utf_traits<char>::encode(character, std::back_inserter(part));
        }
        if (!read(part, !bytes.empty(), parser)) return false;
    } while (!bytes.empty());
    return true;
}

// Absent when it cannot be written.
std::optional<json::value> writable(const JsonValue& value) {
    if (const auto* text = std::get_if<std::string>(&value)) {
        return isUtf8(*text) ? std::optional<json::value>(json::string(*text)) : std::nullopt;
    }
    if (const auto* number = std::get_if<double>(&value)) {
        return std::isfinite(*number) ? std::optional<json::value>(*number) : std::nullopt;
    }
    if (const auto* integer = std::get_if<std::int64_t>(&value)) return json::value(*integer);
    if (const auto* boolean = std::get_if<bool>(&value)) return json::value(*boolean);
    if (std::holds_alternative<std::nullptr_t>(value)) return json::value(nullptr);
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
    json::parse_options options;
    options.max_depth = 512;
    options.allow_trailing_commas = true;
    const Encoding encoding = encodingOf(bytes);
    // Three bytes of UTF-8 for two of UTF-16 at most.
    Parser parser(options, keys, bytes.size() / 2 * (encoding.unitSize == 2 ? 3 : 2) + 3);
    bytes.remove_prefix(encoding.markSize);
    const bool isWhole = encoding.unitSize == 1 ? read(bytes, false, parser) : readConverted(bytes, encoding, parser);
    if (!isWhole) return std::nullopt;
    return parser.handler().takeObject();
}

const JsonValue* JsonObject::find(std::string_view key) const {
    const auto member = std::find_if(members_.begin(), members_.end(), [key](const auto& m) { return m.first == key; });
    return member == members_.end() ? nullptr : &member->second;
}

std::optional<std::int64_t> JsonObject::integer(std::string_view key) const {
    const JsonValue* value = find(key);
    if (const auto* boolean = std::get_if<bool>(value)) return *boolean ? 1 : 0;
    if (const auto* integer = std::get_if<std::int64_t>(value)) return *integer;
    const auto* number = std::get_if<double>(value);
    if (number == nullptr || std::trunc(*number) != *number) return std::nullopt;
    if (*number <= belowIntegers || *number >= beyondIntegers) return std::nullopt;
    return static_cast<std::int64_t>(*number);
}

std::optional<bool> JsonObject::boolean(std::string_view key) const {
    const std::optional<std::int64_t> number = integer(key);
    if (number == 0) return false;
    if (number == 1) return true;
    return std::nullopt;
}

std::optional<std::string> JsonObject::takeString(std::string_view key) {
    auto* text = const_cast<std::string*>(std::get_if<std::string>(find(key)));
    if (text == nullptr) return std::nullopt;
    return std::move(*text);
}

}  // namespace platform
