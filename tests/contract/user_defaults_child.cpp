// Carries out its arguments in order: "get KEY" prints a value, "set KEY TEXT" and "bool KEY 0|1" store one, "pause"
// waits for a line of input.
#include "platform/user_defaults.h"

#include <cstdio>
#include <string>

using namespace platform;

int main(int argc, char** argv) {
    for (int at = 1; at < argc; ++at) {
        const std::string action = argv[at];
        if (action == "pause") {
            std::getchar();
            continue;
        }
        const std::string key = argv[++at];
        if (action == "get") {
            const auto text = userDefaults::string(key);
            std::printf("%s\n", text ? ("[" + *text + "]").c_str() : "none");
        } else if (action == "set") {
            userDefaults::setString(key, argv[++at]);
        } else {
            userDefaults::setBool(key, std::string(argv[++at]) == "1");
        }
        std::fflush(stdout);
    }
}
