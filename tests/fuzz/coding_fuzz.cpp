// Bodies in a content coding, whole, cut or of arbitrary bytes.
#include <cstdint>
#include <string_view>

#include "platform/curl/content_coding_zlib.h"
#include "tests/fuzz/require.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr std::size_t most = 1U << 16U;
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    for (const auto coding : {platform::ContentCoding::gzip, platform::ContentCoding::deflate}) {
        const auto plain = platform::decoded(coding, bytes, most);
        const auto* text = std::get_if<std::string>(&plain);
        fuzz::require(text == nullptr || text->size() <= most, "more than was asked for");
    }
    static_cast<void>(platform::contentCodingNamed(bytes));
    return 0;
}
