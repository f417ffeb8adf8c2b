#include "tests/end_to_end/rig/scripted_opener.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>

namespace end_to_end {

ScriptedOpener::ScriptedOpener() : record_(folder_.path() / "record") {
    const std::filesystem::path file = folder_.path() / "bin" / "xdg-open";
    std::filesystem::create_directory(file.parent_path());
    std::ofstream script(file);
    script << "#!/bin/sh\nprintf '%s\\n' \"$*\" > '" << record_.path().string() << "'\n" << std::flush;
    if (!script.good()) {
        std::perror(file.c_str());
        std::abort();
    }
    std::filesystem::permissions(file, std::filesystem::perms(0755));
}

std::string ScriptedOpener::searchPath() const { return (folder_.path() / "bin").string() + ":/usr/bin:/bin"; }

std::vector<std::string> ScriptedOpener::pages() { return record_.lines(); }

bool ScriptedOpener::waitForPages(std::size_t count) { return record_.waitForLines(count); }

}  // namespace end_to_end
