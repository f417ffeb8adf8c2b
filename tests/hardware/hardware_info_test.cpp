#include "hardware/hardware_info.h"

#include <gtest/gtest.h>

#include <type_traits>

#include "hardware/json_coder.h"

struct HardwareInfoCodingKeys {
    using Keys = HardwareInfo::CodingKeys;
    static auto fromText(std::string_view text) { return HardwareInfo::keyFromText(text); }
    static auto fromInteger(std::int64_t integer) { return HardwareInfo::keyFromInteger(integer); }
    static auto text(Keys key) { return HardwareInfo::textOf(key); }
    static auto integer(Keys key) { return HardwareInfo::integerOf(key); }
};

namespace {

using platform::JsonValue;
using platform::jsonValueFrom;

constexpr std::array keyTexts = {"os",           "processor", "graphicsCard", "ramGB",          "ramType",
                                 "ramFrequency", "storageGB", "storageType",  "directxVersion", "gpuMemory"};

HardwareInfo sample() { return {"a", "b", "c", 1, "d", 2, 3, "e", "f", 4}; }

constexpr const char* sampleJson =
    R"({"os":"a","processor":"b","graphicsCard":"c","ramGB":1,"ramType":"d","ramFrequency":2,)"
    R"("storageGB":3,"storageType":"e","directxVersion":"f","gpuMemory":4})";

std::variant<HardwareInfo, CodingError> decoded(const std::string& json) {
    const JsonValue value = jsonValueFrom(json).value();
    JsonDecoder decoder(value);
    return HardwareInfo::decode(decoder);
}

std::string without(const std::string& member) {
    std::string json = sampleJson;
    json.erase(json.find(member), member.size());
    return json;
}

TEST(HardwareInfo, HasNoDefaultConstructor) { EXPECT_FALSE(std::is_default_constructible_v<HardwareInfo>); }

TEST(HardwareInfo, EncodesTenMembersInDeclarationOrderWithNumbersAsNumbers) {
    JsonEncoder encoder;
    EXPECT_EQ(sample().encode(encoder), std::nullopt);
    EXPECT_EQ(platform::jsonDataFrom(encoder.object()), sampleJson);
}

TEST(HardwareInfo, DecodesWhatItEncodes) {
    const auto result = decoded(sampleJson);
    ASSERT_TRUE(std::holds_alternative<HardwareInfo>(result));
    JsonEncoder encoder;
    EXPECT_EQ(std::get<HardwareInfo>(result).encode(encoder), std::nullopt);
    EXPECT_EQ(platform::jsonDataFrom(encoder.object()), sampleJson);
}

TEST(HardwareInfo, AMissingKeyIsAnErrorThoughTheOtherNineArePresent) {
    EXPECT_EQ(std::get<CodingError>(decoded(without(R"(,"gpuMemory":4)"))),
              (CodingError{CodingError::Kind::keyNotFound, "gpuMemory"}));
}

TEST(HardwareInfo, ANullIsAnErrorOfItsOwn) {
    std::string json = sampleJson;
    json.replace(json.find("\"b\""), 3, "null");
    EXPECT_EQ(std::get<CodingError>(decoded(json)), (CodingError{CodingError::Kind::valueNotFound, "processor"}));
}

TEST(HardwareInfo, TextWhereANumberBelongsIsATypeMismatch) {
    std::string json = sampleJson;
    json.replace(json.find("\"ramGB\":1"), 9, R"("ramGB":"1")");
    EXPECT_EQ(std::get<CodingError>(decoded(json)), (CodingError{CodingError::Kind::typeMismatch, "ramGB"}));
}

TEST(HardwareInfo, ABooleanWhereANumberBelongsIsATypeMismatch) {
    std::string json = sampleJson;
    json.replace(json.find("\"ramGB\":1"), 9, R"("ramGB":true)");
    EXPECT_EQ(std::get<CodingError>(decoded(json)), (CodingError{CodingError::Kind::typeMismatch, "ramGB"}));
}

TEST(HardwareInfo, ANumberWhereTextBelongsIsATypeMismatch) {
    std::string json = sampleJson;
    json.replace(json.find("\"a\""), 3, "7");
    EXPECT_EQ(std::get<CodingError>(decoded(json)), (CodingError{CodingError::Kind::typeMismatch, "os"}));
}

TEST(HardwareInfo, TheFirstOfSeveralErrorsIsTheOneThatCounts) {
    EXPECT_EQ(std::get<CodingError>(decoded("{}")), (CodingError{CodingError::Kind::keyNotFound, "os"}));
}

TEST(HardwareInfo, AnArrayIsNoRecord) {
    EXPECT_EQ(std::get<CodingError>(decoded("[]")), (CodingError{CodingError::Kind::typeMismatch, ""}));
}

TEST(HardwareInfo, AnExtraKeyIsIgnored) {
    std::string json = sampleJson;
    json.insert(1, R"("ram_gb":99,)");
    const auto result = decoded(json);
    ASSERT_TRUE(std::holds_alternative<HardwareInfo>(result));
    EXPECT_EQ(std::get<HardwareInfo>(result).ramGB, 1);
}

// Fails at the write whose number it is told.
struct FailingEncoder {
    using Error = std::string;
    struct Container {
        FailingEncoder* encoder;
        std::optional<Error> encode(std::string_view key, const auto&) {
            encoder->written.emplace_back(key);
            if (encoder->written.size() == encoder->failsAt) return "full";
            return std::nullopt;
        }
    };
    std::variant<Container, Error> container() { return Container{this}; }
    std::size_t failsAt = 0;
    std::vector<std::string> written = {};
};

TEST(HardwareInfo, TheFirstWriteThatFailsEndsTheEncodingWithItsError) {
    const std::vector<std::string> keys = {"os",           "processor", "graphicsCard", "ramGB",          "ramType",
                                           "ramFrequency", "storageGB", "storageType",  "directxVersion", "gpuMemory"};
    for (std::size_t failsAt = 1; failsAt <= keys.size(); ++failsAt) {
        FailingEncoder encoder{.failsAt = failsAt};
        EXPECT_EQ(sample().encode(encoder), "full") << failsAt;
        const auto last = keys.begin() + static_cast<std::ptrdiff_t>(failsAt);
        EXPECT_EQ(encoder.written, std::vector<std::string>(keys.begin(), last));
    }
}

TEST(CodingKeys, AreFoundByTheirExactTextInDeclarationOrder) {
    for (std::size_t index = 0; index < keyTexts.size(); ++index) {
        const auto key = HardwareInfoCodingKeys::fromText(keyTexts[index]);
        ASSERT_TRUE(key) << keyTexts[index];
        EXPECT_EQ(static_cast<std::size_t>(*key), index);
        EXPECT_EQ(HardwareInfoCodingKeys::text(*key), keyTexts[index]);
        EXPECT_EQ(HardwareInfoCodingKeys::integer(*key), std::nullopt);
    }
}

TEST(CodingKeys, AreNotFoundInAnotherCaseOrByTheWebsitesNames) {
    for (const char* text : {"RamGB", "ram_gb", "", "OS", "os "}) {
        EXPECT_EQ(HardwareInfoCodingKeys::fromText(text), std::nullopt) << text;
    }
}

TEST(CodingKeys, AreNeverFoundByAnInteger) {
    for (const std::int64_t integer : {0, 1, -1, 9}) {
        EXPECT_EQ(HardwareInfoCodingKeys::fromInteger(integer), std::nullopt);
    }
}

}  // namespace
