// The record that describes the computer's hardware.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>

// A plain value: every copy is independent. Texts may be empty, numbers may be any; nothing checks them.
struct HardwareInfo {
    HardwareInfo(std::string os, std::string processor, std::string graphicsCard, std::int64_t ramGB,
                 std::string ramType, std::int64_t ramFrequency, std::int64_t storageGB, std::string storageType,
                 std::string directxVersion, std::int64_t gpuMemory);

    std::string os;            // Name of the operating system, without version.
    std::string processor;     // Name.
    std::string graphicsCard;  // Name of the first one.
    std::int64_t ramGB;        // Installed memory in units of 2^30 bytes, cut toward zero.
    std::string ramType;
    std::int64_t ramFrequency;  // The figure on the label of the memory; no unit.
    std::int64_t storageGB;     // Size of the root volume as df prints it.
    std::string storageType;
    std::string directxVersion;
    std::int64_t gpuMemory;  // In gigabytes.

    // Writes the ten fields, in the order above and under their own names, to a keyed container that `encoder` makes.
    // The first write that fails ends it, and its error is what comes back; nothing on success.
    //
    // An Encoder has a type Error and `std::variant<Container, Error> container()`, whose Container takes
    // `std::optional<Error> encode(std::string_view key, const std::string& | std::int64_t)`.
    template <typename Encoder>
    [[nodiscard]] std::optional<typename Encoder::Error> encode(Encoder& encoder) const;

    // Reads the ten fields in the same order. None has a fallback: the first that is missing, null or of another type
    // ends it with the decoder's own error. Other keys are ignored.
    //
    // A Decoder has a type Error and `std::variant<Container, Error> container()`, whose Container gives
    // `std::variant<std::string, Error> text(std::string_view key)` and, alike, `integer(key)`.
    template <typename Decoder>
    [[nodiscard]] static std::variant<HardwareInfo, typename Decoder::Error> decode(Decoder& decoder);

  private:
    friend struct HardwareInfoCodingKeys;  // The tests' way to the keys.

    enum class CodingKeys {
        os,
        processor,
        graphicsCard,
        ramGB,
        ramType,
        ramFrequency,
        storageGB,
        storageType,
        directxVersion,
        gpuMemory,
    };

    static constexpr std::size_t keyCount = 10;

    [[nodiscard]] static std::string_view textOf(CodingKeys key);
    [[nodiscard]] static std::optional<std::int64_t> integerOf(CodingKeys key);           // Always none.
    [[nodiscard]] static std::optional<CodingKeys> keyFromText(std::string_view text);    // Case-sensitive.
    [[nodiscard]] static std::optional<CodingKeys> keyFromInteger(std::int64_t integer);  // Always none.
};

template <typename Encoder>
std::optional<typename Encoder::Error> HardwareInfo::encode(Encoder& encoder) const {
    auto opened = encoder.container();
    if (auto* error = std::get_if<1>(&opened)) return std::move(*error);
    auto& container = std::get<0>(opened);
    const auto write = [&container](CodingKeys key, const auto& value) { return container.encode(textOf(key), value); };

    if (auto error = write(CodingKeys::os, os)) return error;
    if (auto error = write(CodingKeys::processor, processor)) return error;
    if (auto error = write(CodingKeys::graphicsCard, graphicsCard)) return error;
    if (auto error = write(CodingKeys::ramGB, ramGB)) return error;
    if (auto error = write(CodingKeys::ramType, ramType)) return error;
    if (auto error = write(CodingKeys::ramFrequency, ramFrequency)) return error;
    if (auto error = write(CodingKeys::storageGB, storageGB)) return error;
    if (auto error = write(CodingKeys::storageType, storageType)) return error;
    if (auto error = write(CodingKeys::directxVersion, directxVersion)) return error;
    return write(CodingKeys::gpuMemory, gpuMemory);
}

template <typename Decoder>
std::variant<HardwareInfo, typename Decoder::Error> HardwareInfo::decode(Decoder& decoder) {
    using Error = typename Decoder::Error;
    auto opened = decoder.container();
    if (auto* error = std::get_if<1>(&opened)) return std::move(*error);
    auto& container = std::get<0>(opened);

    std::optional<Error> firstError;
    const auto take = [&firstError](auto&& read) {
        using Value = std::variant_alternative_t<0, std::decay_t<decltype(read)>>;
        if (auto* value = std::get_if<0>(&read)) return std::move(*value);
        firstError = std::move(std::get<1>(read));
        return Value{};
    };
    const auto text = [&](CodingKeys key) { return firstError ? std::string{} : take(container.text(textOf(key))); };
    const auto integer = [&](CodingKeys key) {
        return firstError ? std::int64_t{} : take(container.integer(textOf(key)));
    };

    // Braces, because they alone promise to read from left to right.
    HardwareInfo info{text(CodingKeys::os),           text(CodingKeys::processor),   text(CodingKeys::graphicsCard),
                      integer(CodingKeys::ramGB),     text(CodingKeys::ramType),     integer(CodingKeys::ramFrequency),
                      integer(CodingKeys::storageGB), text(CodingKeys::storageType), text(CodingKeys::directxVersion),
                      integer(CodingKeys::gpuMemory)};
    if (firstError) return std::move(*firstError);
    return info;
}
