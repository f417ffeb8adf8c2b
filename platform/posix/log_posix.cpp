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

}  // namespace

void log(std::string_view message, std::string_view value) {
    if (output == nullptr) return;
    flockfile(output);  // Around the whole line.
    std::fwrite(message.data(), 1, message.size(), output);
    std::fwrite(value.data(), 1, value.size(), output);
    std::fputc('\n', output);
    std::fflush(output);
    funlockfile(output);
}

}  // namespace platform
