// The log on file descriptor 1.
#include "platform/log.h"

#include <fcntl.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <string>

namespace platform {

namespace {

// Started with one of the three closed, the program would get it back as its first socket or file, and then write log
// lines into that.
void openMissingStandardDescriptors() {
    int descriptor = open("/dev/null", O_RDWR);
    while (descriptor >= STDIN_FILENO && descriptor <= STDERR_FILENO) descriptor = open("/dev/null", O_RDWR);
    if (descriptor >= 0) close(descriptor);
}

// Libraries print to standard output when they please, and whatever the program starts would inherit it. So the log
// takes the descriptor for itself, hidden from children, before main begins, and leaves standard error in its place.
FILE* takeStandardOutput() {
    openMissingStandardDescriptors();
    std::signal(SIGPIPE, SIG_IGN);  // A reader that has gone away is no reason to end.
    const int descriptor = fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    if (descriptor < 0 || dup2(STDERR_FILENO, STDOUT_FILENO) < 0) return nullptr;
    return fdopen(descriptor, "w");
}

FILE* const output = takeStandardOutput();

bool isForATerminal() {
    static const bool is = isatty(fileno(output)) != 0;
    return is;
}

// A terminal obeys control characters, so that an answer could move the cursor and write over lines that tell of it.
// There they are shown as the pictures that Unicode has of them.
std::string withControlsVisible(std::string_view text) {
    constexpr std::string_view replacement = "\xEF\xBF\xBD";
    std::string visible;
    for (std::size_t at = 0; at < text.size(); ++at) {
        const auto byte = static_cast<unsigned char>(text[at]);
        const bool isControl = (byte < 0x20 && byte != '\n' && byte != '\t') || byte == 0x7F;
        const unsigned char next = at + 1 < text.size() ? static_cast<unsigned char>(text[at + 1]) : 0;
        if (isControl) {
            visible += "\xE2\x90";
            visible += static_cast<char>(0x80 | (byte == 0x7F ? 0x21 : byte));
        } else if (byte == 0xC2 && next >= 0x80 && next < 0xA0) {  // U+0080 to U+009F
            visible += replacement;
            ++at;
        } else {
            visible += text[at];
        }
    }
    return visible;
}

void write(std::string_view text) {
    if (text.empty()) return;  // It may point nowhere.
    if (isForATerminal()) {
        const std::string visible = withControlsVisible(text);
        std::fwrite(visible.data(), 1, visible.size(), output);
    } else {
        std::fwrite(text.data(), 1, text.size(), output);
    }
}

}  // namespace

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
