#include "tests/end_to_end/rig/scratch_folder.h"

#include <cstdio>
#include <cstdlib>
#include <string>
#include <system_error>

namespace end_to_end {

ScratchFolder::ScratchFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "end-to-end-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) {
        std::perror(name.c_str());
        std::abort();
    }
    path_ = name;
}

ScratchFolder::~ScratchFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

}  // namespace end_to_end
