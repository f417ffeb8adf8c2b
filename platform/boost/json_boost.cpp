// JSON read and written by Boost.JSON.
#include "platform/json.h"

#ifdef __APPLE__
#include <xlocale.h>
#endif

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

// Builds our value while the parser reads. The library's own document would keep the last of two members of one name,
// and the first is the one that counts.
class Builder {
  public:
    static constexpr std::size_t max_object_size = static_cast<std::size_t>(-1);
    static constexpr std::size_t max_array_size = static_cast<std::size_t>(-1);
    static constexpr std::size_t max_key_size = static_cast<std::size_t>(-1);
    static constexpr std::size_t max_string_size = static_cast<std::size_t>(-1);

    [[nodiscard]] std::optional<JsonValue> takeRoot() { return std::move(root_); }

    bool on_document_begin(error_code&) { return true; }
    bool on_document_end(error_code&) { return true; }

    bool on_array_begin(error_code&) { return open(JsonArray{}); }
    bool on_array_end(std::size_t, error_code&) { return close(); }
    bool on_object_begin(error_code&) { return open(JsonObject{}); }
    bool on_object_end(std::size_t, error_code&) { return close(); }

    bool on_key_part(json::string_view part, std::size_t, error_code&) { return gather(part); }
    bool on_key(json::string_view part, std::size_t, error_code&) {
        gather(part);
        open_.back().key = std::exchange(gathered_, {});
        return true;
    }
    bool on_string_part(json::string_view part, std::size_t, error_code&) { return gather(part); }
    bool on_string(json::string_view part, std::size_t, error_code&) {
        gather(part);
        return place(std::exchange(gathered_, {}));
    }

    // A number is read from its text here. The library's own reading of it differs from version to version, in the last
    // digits and at the edges of 64 bits.
    bool on_number_part(json::string_view part, error_code&) { return gather(part); }
    bool on_int64(std::int64_t, json::string_view part, error_code& error) { return placeNumber(part, error); }
    bool on_uint64(std::uint64_t, json::string_view part, error_code& error) { return placeNumber(part, error); }
    bool on_double(double, json::string_view part, error_code& error) { return placeNumber(part, error); }
    bool on_bool(bool boolean, error_code&) { return place(JsonValue::Content(boolean)); }
    bool on_null(error_code&) { return place(JsonValue::Content(nullptr)); }

    bool on_comment_part(json::string_view, error_code&) { return true; }
    bool on_comment(json::string_view, error_code&) { return true; }

  private:
    struct Container {
        std::variant<JsonArray, JsonObject> content;
        std::string key = {};  // Of the member whose value comes next.
    };

    bool gather(json::string_view part) {
        gathered_.append(part.data(), part.size());
        return true;
    }

    bool open(std::variant<JsonArray, JsonObject> empty) {
        open_.push_back({std::move(empty)});
        return true;
    }

    bool close() {
        Container closed = std::move(open_.back());
        open_.pop_back();
        return std::visit([this](auto& content) { return place(JsonValue::Content(std::move(content))); },
                          closed.content);
    }

    bool placeNumber(json::string_view part, error_code& error) {
        gather(part);
        const std::string text = std::exchange(gathered_, {});
        if (const std::optional<std::int64_t> integer = integerFrom(text)) return place(JsonValue::Content(*integer));
        const double number = nearestDouble(text);
        if (!std::isfinite(number)) {
            error = json::error::exponent_overflow;
            return false;
        }
        return place(JsonValue::Content(number));
    }

    bool place(JsonValue value) {
        if (open_.empty()) {
            root_ = std::move(value);
        } else if (auto* array = std::get_if<JsonArray>(&open_.back().content)) {
            array->push_back(std::move(value));
        } else {
            std::get<JsonObject>(open_.back().content).add(std::move(open_.back().key), std::move(value));
        }
        return true;
    }

    std::vector<Container> open_;
    std::string gathered_;
    std::optional<JsonValue> root_;
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

std::optional<std::string> utf8From(std::string_view bytes) {
    const std::optional<UnicodeEncoding> wide = wideEncodingOf(bytes);
    std::optional<std::string> text = wide ? textFrom(*wide, bytes) : std::string(bytes);
    if (text && text->starts_with(byteOrderMark)) text->erase(0, byteOrderMark.size());
    return text;
}

bool isContainer(const JsonValue& value) {
    return std::holds_alternative<JsonObject>(value.content()) || std::holds_alternative<JsonArray>(value.content());
}

// The library's value, for its writer; absent when something in it cannot be written.
std::optional<json::value> writable(const JsonValue& value);

struct MakeWritable {
    std::optional<json::value> operator()(std::nullptr_t) const { return json::value(nullptr); }
    std::optional<json::value> operator()(bool boolean) const { return json::value(boolean); }
    std::optional<json::value> operator()(std::int64_t number) const { return json::value(number); }
    std::optional<json::value> operator()(double number) const {
        return std::isfinite(number) ? std::optional<json::value>(number) : std::nullopt;
    }
    std::optional<json::value> operator()(const std::string& text) const {
        return isUtf8(text) ? std::optional<json::value>(json::string(text)) : std::nullopt;
    }
    std::optional<json::value> operator()(const JsonArray& elements) const {
        json::array written;
        for (const JsonValue& element : elements) {
            std::optional<json::value> converted = writable(element);
            if (!converted) return std::nullopt;
            written.push_back(std::move(*converted));
        }
        return json::value(std::move(written));
    }
    std::optional<json::value> operator()(const JsonObject& object) const {
        json::object written;
        for (const auto& [key, member] : object.members()) {
            std::optional<json::value> converted = writable(member);
            if (!converted || !isUtf8(key)) return std::nullopt;
            written.emplace(key, std::move(*converted));
        }
        return json::value(std::move(written));
    }
};

std::optional<json::value> writable(const JsonValue& value) { return std::visit(MakeWritable{}, value.content()); }

}  // namespace

std::optional<std::string> jsonDataFrom(const JsonObject& object) {
    const std::optional<json::value> value = MakeWritable{}(object);
    if (!value) return std::nullopt;
    return json::serialize(*value);
}

std::optional<JsonValue> jsonValueFrom(std::string_view bytes) {
    const std::optional<std::string> text = utf8From(bytes);
    if (!text) return std::nullopt;

    json::parse_options options;
    options.max_depth = 512;
    options.allow_trailing_commas = true;
    json::basic_parser<Builder> parser(options);
    error_code error;
    const std::size_t read = parser.write_some(false, text->data(), text->size(), error);
    if (error || read != text->size()) return std::nullopt;

    std::optional<JsonValue> root = parser.handler().takeRoot();
    if (!root || !isContainer(*root)) return std::nullopt;
    return root;
}

}  // namespace platform
