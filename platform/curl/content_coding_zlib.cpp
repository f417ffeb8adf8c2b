// Content codings by zlib.
#include "platform/curl/content_coding_zlib.h"

#define ZLIB_CONST
#include <zlib.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <memory>
#include <vector>

namespace platform {

namespace {

// What zlib's windowBits stand for besides the size of the window.
constexpr int zlibFormat = MAX_WBITS;
constexpr int gzipFormat = MAX_WBITS + 16;
constexpr int rawFormat = -MAX_WBITS;

// zlib counts its input in an unsigned int.
constexpr std::size_t largestPiece = std::size_t{1} << 30;

// A gzip body may be several files one after another; anything else behind the end is padding.
bool nextMemberBegins(std::string_view rest) { return rest.starts_with("\x1f\x8b"); }

// Hands the decoded bytes on, piece by piece, for as long as `take` wants more of them. True when all have been taken.
template <typename Take>
bool inflateInPieces(std::string_view bytes, int format, Take take) {
    z_stream stream{};
    if (inflateInit2(&stream, format) != Z_OK) return false;
    const std::unique_ptr<z_stream, decltype(&inflateEnd)> ended(&stream, inflateEnd);

    std::array<Bytef, 65536> buffer;
    for (;;) {
        const std::size_t piece = std::min(bytes.size(), largestPiece);
        stream.next_in = reinterpret_cast<const Bytef*>(bytes.data());
        stream.avail_in = static_cast<uInt>(piece);
        stream.next_out = buffer.data();
        stream.avail_out = static_cast<uInt>(buffer.size());

        const int result = inflate(&stream, Z_NO_FLUSH);
        bytes.remove_prefix(piece - stream.avail_in);
        if (!take(std::string_view(reinterpret_cast<const char*>(buffer.data()), buffer.size() - stream.avail_out))) {
            return false;
        }

        if (result == Z_STREAM_END && format == gzipFormat && nextMemberBegins(bytes)) {
            inflateReset(&stream);
        } else if (result == Z_STREAM_END) {
            return true;
        } else if (result != Z_OK) {
            return false;  // Broken, or no input left although the end has not come.
        }
    }
}

}  // namespace

std::optional<ContentCoding> contentCodingNamed(std::string_view value) {
    std::string name(value);
    std::transform(name.begin(), name.end(), name.begin(),
                   [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
    if (name == "gzip" || name == "x-gzip") return ContentCoding::gzip;
    if (name == "deflate") return ContentCoding::deflate;
    return std::nullopt;
}

std::variant<std::string, DecodingFailure> decoded(ContentCoding coding, std::string_view bytes, std::size_t most) {
    // The standard's deflate is in zlib's wrapping, but there have always been servers that leave the wrapping out.
    const std::vector<int> formats =
        coding == ContentCoding::gzip ? std::vector{gzipFormat} : std::vector{zlibFormat, rawFormat};
    for (const int format : formats) {
        // First only counted: an answer of a megabyte may decode to a gigabyte.
        std::size_t size = 0;
        const bool isWhole = inflateInPieces(bytes, format, [&](std::string_view piece) {
            size += piece.size();
            return size <= most;
        });
        if (size > most) return DecodingFailure::tooLarge;
        if (!isWhole) continue;
        std::string plain;
        plain.reserve(size);
        inflateInPieces(bytes, format, [&](std::string_view piece) {
            plain.append(piece);
            return true;
        });
        return plain;
    }
    return DecodingFailure::broken;
}

}  // namespace platform
