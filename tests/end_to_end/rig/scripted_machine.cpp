#include "tests/end_to_end/rig/scripted_machine.h"

#include <sys/stat.h>
#include <sys/sysmacros.h>

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

// The file that stands in the place of a command. What it does lies outside the overlay, since a file below a mounted
// overlay must not be changed.
std::string standIn(const std::string& command, const fs::path& record, const fs::path& gate, const fs::path& body) {
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

ScriptedMachine::ScriptedMachine() : record_(folder_.path() / "record") {}

void ScriptedMachine::script(const std::string& command, std::string_view shellText) {
    const fs::path body = bodyOf(command);
    const fs::path draft = body.string() + ".draft";
    writeFile(draft, shellText);
    fs::rename(draft, body);  // A run that has begun keeps what it has read from.

    const fs::path file = layerOf(command);
    if (fs::exists(file)) return;
    writeFile(file, standIn(command, record_.path(), gateOf(command), body));
    fs::permissions(file, fs::perms(0755));
}

void ScriptedMachine::makeMissing(const std::string& command) {
    const fs::path file = layerOf(command);
    fs::remove(file);
    if (mknod(file.c_str(), S_IFCHR, makedev(0, 0)) == 0) return;  // An overlay takes this for "not there".
    std::perror(file.c_str());
    std::abort();
}

void ScriptedMachine::makeNotExecutable(const std::string& command) {
    script(command, "");
    fs::permissions(layerOf(command), fs::perms(0644));
}

void ScriptedMachine::hold(const std::string& command) {
    auto& gate = gates_[command];
    if (!gate) gate = std::make_unique<Fifo>(gateOf(command));
}

std::vector<std::string> ScriptedMachine::runs() {
    std::vector<std::string> lines;
    const std::string& bytes = record_.bytes();
    std::size_t start = 0;
    for (std::size_t end = bytes.find('\n'); end != std::string::npos; end = bytes.find('\n', start)) {
        lines.push_back(bytes.substr(start, end - start));
        start = end + 1;
    }
    return lines;
}

bool ScriptedMachine::waitForRuns(std::size_t count, std::chrono::milliseconds limit) {
    const auto lines = [](const std::string& bytes) {
        return static_cast<std::size_t>(std::count(bytes.begin(), bytes.end(), '\n'));
    };
    return record_.waitUntil([&](const std::string& bytes) { return lines(bytes) >= count; }, limit);
}

std::vector<OverlayMount> ScriptedMachine::mounts() const {
    std::vector<OverlayMount> mounts;
    for (const auto& [folder, layer] : layers_) {
        mounts.push_back({folder, "lowerdir=" + layer.string() + ":" + folder.string()});
    }
    return mounts;
}

fs::path ScriptedMachine::layerOf(const std::string& command) {
    const fs::path real = fs::canonical(fs::path(command).parent_path());  // /bin may be a link to /usr/bin.
    fs::path& layer = layers_[real];
    if (layer.empty()) {
        layer = folder_.path() / inOneName(real.string());
        fs::create_directory(layer);
        fs::permissions(layer, fs::perms(0755));
    }
    return layer / fs::path(command).filename();
}

fs::path ScriptedMachine::bodyOf(const std::string& command) const {
    return folder_.path() / (inOneName(command) + ".sh");
}

fs::path ScriptedMachine::gateOf(const std::string& command) const {
    return folder_.path() / (inOneName(command) + ".gate");
}

}  // namespace end_to_end
