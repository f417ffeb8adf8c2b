// Prints which descriptors it has besides standard input.
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>

int main() {
    for (int descriptor = STDOUT_FILENO; descriptor < 256; ++descriptor) {
        struct stat is {};
        if (fstat(descriptor, &is) == 0) std::printf("%d %s\n", descriptor, S_ISFIFO(is.st_mode) ? "pipe" : "other");
    }
}
