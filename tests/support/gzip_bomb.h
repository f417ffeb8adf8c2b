// Endless answers in gzip.
#pragma once

#include <string>

#include "tests/support/scripted_server.h"

namespace testSupport {

// The header of an answer with a gzip body of unknown length, and the gzip header.
[[nodiscard]] inline std::string gzipHeader() {
    using namespace std::string_literals;
    return "HTTP/1.1 200 OK\r\nContent-Encoding: gzip\r\n\r\n\x1f\x8b\x08\x00\x00\x00\x00\x00\x00\x03"s;
}

// Endless zero bytes, 158 for each byte sent.
[[nodiscard]] inline Script gzipBomb() {
    // A block of one zero byte, then "repeat the last byte 258 times", 8 times in 13 bytes.
    const std::string more = "\x05\xa3\x60\x14\x8c\x82\x51\x30\x0a\x46\xc1\x28\x18";
    std::string bytes;
    while (bytes.size() < 65536) bytes += more;
    return {Send{gzipHeader() + "\x62\x18"}, SendEndlessly{bytes}};
}

}  // namespace testSupport
