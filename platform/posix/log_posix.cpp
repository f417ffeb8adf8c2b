// The log on file descriptor 1.
#include "platform/log.h"

#include <fcntl.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <string>

namespace platform {

namespace {

// Otherwise the first socket or file would get the number of a missing one, and log lines would be written into it.
void openMissingStandardDescriptors() {
    int descriptor = open("/dev/null", O_RDWR);
    while (descriptor >= STDIN_FILENO && descriptor <= STDERR_FILENO) descriptor = open("/dev/null", O_RDWR);
    if (descriptor >= 0) close(descriptor);
}

// Null before beginLog(), and when no descriptor was left for it.
FILE* output = nullptr;

bool isForATerminal() {
    static const bool is = isatty(fileno(output)) != 0;
    return is;
}

bool isLineEnding(std::string_view text) { return text.starts_with('\n') || text.starts_with("\r\n"); }

// An answer could otherwise move a terminal's cursor and overwrite lines of the log. Unicode has a picture of
// each control character below 0x80.
void writeWithControlsVisible(std::string_view text) {
    constexpr const char* replacement = "\xEF\xBF\xBD";
    for (std::size_t at = 0; at < text.size(); ++at) {
        const auto byte = static_cast<unsigned char>(text[at]);
        const bool isObeyed = byte == '\t' || isLineEnding(text.substr(at));
        const bool isControl = (byte < 0x20 && !isObeyed) || byte == 0x7F;
        const unsigned char next = at + 1 < text.size() ? static_cast<unsigned char>(text[at + 1]) : 0;
        if (isControl) {
            std::fputs("\xE2\x90", output);
            std::fputc(0x80 | (byte == 0x7F ? 0x21 : byte), output);
        } else if (byte == 0xC2 && next >= 0x80 && next < 0xA0) {  // U+0080 to U+009F
            std::fputs(replacement, output);
            ++at;
        } else {
            std::fputc(byte, output);
        }
    }
}

void write(std::string_view text) {
    if (text.empty()) return;  // data() may be null.
    if (isForATerminal()) {
        writeWithControlsVisible(text);
    } else {
        std::fwrite(text.data(), 1, text.size(), output);
    }
}

}  // namespace

void beginLog() {
    openMissingStandardDescriptors();
    std::signal(SIGPIPE, SIG_IGN);
    const int descriptor = fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    if (descriptor >= 0 && dup2(STDERR_FILENO, STDOUT_FILENO) >= 0) output = fdopen(descriptor, "w");
}

void log(std::string_view message, std::string_view value) {
    if (output == nullptr) return;
    flockfile(output);  // Around the whole line.
    write(message);
    write(value);
    std::fputc('\n', output);
    std::fflush(output);
    funlockfile(output);
}

}  // namespace platform
