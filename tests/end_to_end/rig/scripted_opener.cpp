#include "tests/end_to_end/rig/scripted_opener.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>

namespace end_to_end {

namespace {

namespace fs = std::filesystem;

using Calls = std::vector<std::vector<std::string>>;

// The text up to the next NUL.
std::optional<std::string> nextText(const std::string& bytes, std::size_t& position) {
    const std::size_t end = bytes.find('\0', position);
    if (end == std::string::npos) return std::nullopt;
    std::string text = bytes.substr(position, end - position);
    position = end + 1;
    return text;
}

// The complete calls in `bytes`. A call is the number of its arguments, then the arguments, each followed by a NUL.
Calls callsIn(const std::string& bytes) {
    Calls calls;
    std::size_t position = 0;
    while (const std::optional<std::string> count = nextText(bytes, position)) {
        std::vector<std::string> arguments;
        for (int left = std::stoi(*count); left > 0; --left) {
            std::optional<std::string> argument = nextText(bytes, position);
            if (!argument) return calls;
            arguments.push_back(std::move(*argument));
        }
        calls.push_back(std::move(arguments));
    }
    return calls;
}

}  // namespace

ScriptedOpener::ScriptedOpener() : record_(folder_.path() / "record") {
    const fs::path file = folder_.path() / "bin" / "xdg-open";
    fs::create_directory(file.parent_path());
    std::ofstream script(file);
    script << "#!/bin/sh\nprintf '%s\\0' \"$#\" \"$@\" > '" << record_.path().string() << "'\n" << std::flush;
    if (!script.good()) {
        std::perror(file.c_str());
        std::abort();
    }
    fs::permissions(file, fs::perms(0755));
}

std::string ScriptedOpener::searchPath() const { return (folder_.path() / "bin").string() + ":/usr/bin:/bin"; }

std::vector<std::vector<std::string>> ScriptedOpener::calls() { return callsIn(record_.bytes()); }

bool ScriptedOpener::waitForCalls(std::size_t count, std::chrono::milliseconds limit) {
    return record_.waitUntil([&](const std::string& bytes) { return callsIn(bytes).size() >= count; }, limit);
}

}  // namespace end_to_end
