// Answers that decode to many zero bytes.
#pragma once

#include <string>

#include "tests/support/scripted_server.h"

namespace testSupport {

// The header of an answer with a gzip body of unknown length, and the gzip header.
[[nodiscard]] inline std::string gzipHeader() {
    using namespace std::string_literals;
    return "HTTP/1.1 200 OK\r\nContent-Encoding: gzip\r\n\r\n\x1f\x8b\x08\x00\x00\x00\x00\x00\x00\x03"s;
}

// A compressed block begins with one zero byte and a part of "repeat the last byte 258 times"; each `moreZeros`
// completes that, repeats 7 times more and begins another.
inline constexpr const char* firstZeros = "\x62\x18";
inline constexpr const char* moreZeros = "\x05\xa3\x60\x14\x8c\x82\x51\x30\x0a\x46\xc1\x28\x18";

// Endless zero bytes, 158 for each byte sent.
[[nodiscard]] inline Script gzipBomb() {
    std::string bytes;
    while (bytes.size() < 65536) bytes += moreZeros;
    return {Send{gzipHeader() + firstZeros}, SendEndlessly{bytes}};
}

// Zero bytes in "deflate", without header and checksum: at least 259.
[[nodiscard]] inline std::string deflateOfZeros(std::size_t count) {
    using namespace std::string_literals;
    std::string bytes = firstZeros;
    std::size_t left = count - 1 - 258;
    for (; left >= 8 * 258; left -= 8 * 258) bytes += moreZeros;
    // Completes the last repetition and ends the block. The rest is a block without compression, after its size.
    bytes += "\x05\x80\x00"s;
    for (const std::size_t size : {left, ~left}) bytes += {static_cast<char>(size), static_cast<char>(size >> 8U)};
    return bytes.append(left, '\0');
}

}  // namespace testSupport
