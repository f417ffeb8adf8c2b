// A record read from whatever JSON: what is read is written and read again as the same.
#include <cstdint>
#include <string_view>

#include "hardware/hardware_info.h"
#include "hardware/json_coder.h"
#include "tests/fuzz/require.h"

namespace {

platform::JsonObject written(const HardwareInfo& record) {
    JsonEncoder encoder;
    fuzz::require(!record.encode(encoder), "a record that cannot be written");
    return encoder.object();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto value = platform::jsonValueFrom({reinterpret_cast<const char*>(data), size});
    if (!value) return 0;
    JsonDecoder decoder(*value);
    const auto read = HardwareInfo::decode(decoder);
    if (const auto* error = std::get_if<CodingError>(&read)) {
        const bool isWhole = !std::holds_alternative<platform::JsonObject>(value->content());
        fuzz::require(error->key.empty() == isWhole, "an error that names no field");
        return 0;
    }
    const auto bytes = platform::jsonDataFrom(written(std::get<0>(read)));
    fuzz::require(bytes.has_value(), "a record that has no bytes");
    const auto again = platform::jsonValueFrom(*bytes);
    fuzz::require(again.has_value(), "bytes that cannot be read");
    JsonDecoder second(*again);
    const auto reread = HardwareInfo::decode(second);
    fuzz::require(std::holds_alternative<HardwareInfo>(reread), "a record that cannot be read again");
    fuzz::require(platform::jsonDataFrom(written(std::get<0>(reread))) == bytes, "another record");
    return 0;
}
