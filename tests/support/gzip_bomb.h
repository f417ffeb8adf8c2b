// Answers in gzip that never end.
#pragma once

#include <string>

#include "tests/support/scripted_server.h"

namespace testSupport {

// The header of an answer whose body is in gzip and ends with the connection, and the body's own first bytes.
[[nodiscard]] inline std::string gzipHeader() {
    using namespace std::string_literals;
    return "HTTP/1.1 200 OK\r\nContent-Encoding: gzip\r\n\r\n\x1f\x8b\x08\x00\x00\x00\x00\x00\x00\x03"s;
}

// Zero bytes without end, 158 to one.
[[nodiscard]] inline Script gzipBomb() {
    // A block that begins with a zero and goes on with "the last byte 258 times more", 8 times in 13 bytes.
    const std::string more = "\x05\xa3\x60\x14\x8c\x82\x51\x30\x0a\x46\xc1\x28\x18";
    std::string bytes;
    while (bytes.size() < 65536) bytes += more;
    return {Send{gzipHeader() + "\x62\x18"}, SendEndlessly{bytes}};
}

}  // namespace testSupport
