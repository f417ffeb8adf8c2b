// Opens the URL given and prints whether that succeeded.
#include "platform/browser.h"

#include <cstdio>

int main(int, char** argv) {
    const bool opened = platform::openInBrowser(platform::Url::parse(argv[1]).value());
    std::puts(opened ? "opened" : "failed");
}
