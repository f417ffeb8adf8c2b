// A record from arbitrary JSON: writing and reading it again gives the same record.
#include <cstdint>
#include <string_view>

#include "hardware/hardware_info.h"
#include "tests/fuzz/require.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto object = platform::jsonObjectFrom({reinterpret_cast<const char*>(data), size});
    if (!object) return 0;
    try {
        const auto bytes = platform::jsonDataFrom(jsonObjectOf(hardwareInfoFrom(*object)));
        fuzz::require(bytes.has_value(), "a record that has no bytes");
        const auto again = platform::jsonObjectFrom(*bytes);
        fuzz::require(again.has_value(), "bytes that cannot be read");
        fuzz::require(platform::jsonDataFrom(jsonObjectOf(hardwareInfoFrom(*again))) == bytes, "another record");
    } catch (const CodingError& error) {
        fuzz::require(!error.key.empty(), "an error that names no field");
    }
    return 0;
}
