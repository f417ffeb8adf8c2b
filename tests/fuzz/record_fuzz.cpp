// A record read from whatever JSON: what is read is written and read again as the same.
#include <cstdint>
#include <string_view>

#include "hardware/hardware_info.h"
#include "tests/fuzz/require.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto object = platform::jsonObjectFrom({reinterpret_cast<const char*>(data), size});
    if (!object) return 0;
    const auto read = hardwareInfoFrom(*object);
    if (const auto* error = std::get_if<CodingError>(&read)) {
        fuzz::require(!error->key.empty(), "an error that names no field");
        return 0;
    }
    const auto bytes = platform::jsonDataFrom(jsonObjectOf(std::get<0>(read)));
    fuzz::require(bytes.has_value(), "a record that has no bytes");
    const auto again = platform::jsonObjectFrom(*bytes);
    fuzz::require(again.has_value(), "bytes that cannot be read");
    const auto reread = hardwareInfoFrom(*again);
    fuzz::require(std::holds_alternative<HardwareInfo>(reread), "a record that cannot be read again");
    fuzz::require(platform::jsonDataFrom(jsonObjectOf(std::get<0>(reread))) == bytes, "another record");
    return 0;
}
