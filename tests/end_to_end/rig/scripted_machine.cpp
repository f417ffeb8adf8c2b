#include "tests/end_to_end/rig/scripted_machine.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>

namespace end_to_end {

namespace {

namespace fs = std::filesystem;

std::string inOneName(std::string path) {
    std::replace(path.begin(), path.end(), '/', '_');
    return path;
}

void writeFile(const fs::path& path, std::string_view text) {
    std::ofstream file(path);
    file << text << std::flush;
    if (file.good()) return;
    std::perror(path.c_str());
    std::abort();
}

// The file in the place of a command. It reads its body from another file, so that replacing the body does not change
// a run that has started.
std::string scriptFor(const std::string& command, const fs::path& record, const fs::path& gate, const fs::path& body) {
    const auto assignment = [](const std::string& name, const std::string& value) {
        return name + "='" + value + "'\n";
    };
    return "#!/bin/sh\n" + assignment("command", command) + assignment("record", record) + assignment("gate", gate) +
           assignment("body", body) + R"(
PATH=/usr/sbin:/usr/bin:/sbin:/bin
printf '%s\n' "$command${*:+ $*}" > "$record"
if [ -p "$gate" ]; then read -r ticket < "$gate"; fi
. "$body"
)";
}

}  // namespace

Environment startingCommandsIn(const fs::path& folder) {
    return {{"LD_PRELOAD", SCRIPTED_COMMANDS_LIBRARY}, {"SCRIPTED_COMMANDS", folder}};
}

ScriptedMachine::ScriptedMachine() : record_(folder_.path() / "record") {
    for (const char* const bin : {"usr/sbin", "bin"}) fs::create_directories(commands() / bin);
}

void ScriptedMachine::script(const std::string& command, std::string_view shellText) {
    const fs::path body = bodyOf(command);
    const fs::path draft = body.string() + ".draft";
    writeFile(draft, shellText);
    fs::rename(draft, body);

    const fs::path file = fileOf(command);
    if (fs::exists(file)) return;
    writeFile(file, scriptFor(command, record_.path(), gateOf(command), body));
    fs::permissions(file, fs::perms(0755));
}

void ScriptedMachine::hold(const std::string& command) {
    auto& gate = gates_[command];
    if (!gate) gate = std::make_unique<Fifo>(gateOf(command));
}

std::vector<std::string> ScriptedMachine::runs() { return record_.lines(); }

bool ScriptedMachine::waitForRuns(std::size_t count) { return record_.waitForLines(count); }

fs::path ScriptedMachine::fileOf(const std::string& command) const { return commands().string() + command; }

fs::path ScriptedMachine::bodyOf(const std::string& command) const {
    return folder_.path() / (inOneName(command) + ".sh");
}

fs::path ScriptedMachine::gateOf(const std::string& command) const {
    return folder_.path() / (inOneName(command) + ".gate");
}

}  // namespace end_to_end
