// An arbitrary settings file: stored values can be read again, and other values stay.
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "platform/text.h"
#include "platform/user_defaults.h"
#include "tests/fuzz/require.h"

namespace {

namespace defaults = platform::userDefaults;

// A home, in memory if possible, removed at exit.
const std::filesystem::path& home() {
    static const std::filesystem::path path = [] {
        std::string name =
            (std::filesystem::exists("/dev/shm") ? "/dev/shm" : "/tmp") + std::string("/settings-XXXXXX");
        fuzz::require(mkdtemp(name.data()) != nullptr, "no scratch folder");
        setenv("HOME", name.c_str(), 1);
        unsetenv("XDG_CONFIG_HOME");
        std::atexit([] { std::filesystem::remove_all(home()); });
        return std::filesystem::path(name);
    }();
    return path;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::filesystem::path folder = home() / ".config/velmora";
    std::filesystem::create_directories(folder);
    std::ofstream(folder / "hardware-detector.conf", std::ios::binary)
        .write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));

    const auto before = defaults::string("com.velmora.device_id");
    if (before) fuzz::require(platform::isUtf8(*before), "a value that is not UTF-8");
    defaults::setString("com.velmora.last_tracked_date", "2026-11-20");
    fuzz::require(defaults::string("com.velmora.device_id") == before, "the id changes with another key");
    fuzz::require(defaults::string("com.velmora.last_tracked_date") == "2026-11-20", "the stored value is lost");
    return 0;
}
