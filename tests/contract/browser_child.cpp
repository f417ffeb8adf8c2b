// Opens the URL it is given and prints whether the desktop took it.
#include "platform/browser.h"

#include <cstdio>

int main(int, char** argv) {
    const bool taken = platform::openInBrowser(platform::Url::parse(argv[1]).value());
    std::puts(taken ? "taken" : "refused");
}
