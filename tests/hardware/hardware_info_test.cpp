#include "hardware/hardware_info.h"

#include <gtest/gtest.h>

#include <optional>
#include <type_traits>

namespace {

HardwareInfo sample() { return {"a", "b", "c", 1, "d", 2, 3, "e", "f", 4}; }

constexpr const char* sampleJson =
    R"({"os":"a","processor":"b","graphicsCard":"c","ramGB":1,"ramType":"d","ramFrequency":2,)"
    R"("storageGB":3,"storageType":"e","directxVersion":"f","gpuMemory":4})";

HardwareInfo decoded(const std::string& json) { return hardwareInfoFrom(platform::jsonObjectFrom(json).value()); }

std::optional<CodingError> errorOf(const std::string& json) {
    try {
        (void)decoded(json);
        return std::nullopt;
    } catch (const CodingError& error) {
        return error;
    }
}

std::string without(const std::string& member) {
    std::string json = sampleJson;
    json.erase(json.find(member), member.size());
    return json;
}

std::string withRam(const std::string& value) {
    std::string json = sampleJson;
    return json.replace(json.find("\"ramGB\":1"), 9, "\"ramGB\":" + value);
}

TEST(HardwareInfo, HasNoDefaultConstructor) { EXPECT_FALSE(std::is_default_constructible_v<HardwareInfo>); }

TEST(HardwareInfo, EncodesTenMembersInDeclarationOrderWithNumbersAsNumbers) {
    EXPECT_EQ(platform::jsonDataFrom(jsonObjectOf(sample())), sampleJson);
}

TEST(HardwareInfo, DecodesWhatItEncodes) {
    EXPECT_EQ(platform::jsonDataFrom(jsonObjectOf(decoded(sampleJson))), sampleJson);
}

TEST(HardwareInfo, AMissingKeyIsAnError) {
    EXPECT_EQ(errorOf(without(R"(,"gpuMemory":4)")), (CodingError{CodingError::Kind::keyNotFound, "gpuMemory"}));
}

TEST(HardwareInfo, ANullIsAnErrorOfItsOwnKind) {
    std::string json = sampleJson;
    json.replace(json.find("\"b\""), 3, "null");
    EXPECT_EQ(errorOf(json), (CodingError{CodingError::Kind::valueNotFound, "processor"}));
}

TEST(HardwareInfo, AValueThatIsNo64BitIntegerIsATypeMismatch) {
    for (const char* value :
         {R"("1")", "true", "16.5", "9223372036854775808", "-9223372036854775809", "1e19", "[]", "{}", "[1]"}) {
        EXPECT_EQ(errorOf(withRam(value)), (CodingError{CodingError::Kind::typeMismatch, "ramGB"})) << value;
    }
}

TEST(HardwareInfo, ANumberWithoutAFractionIsAnInteger) { EXPECT_EQ(decoded(withRam("16.0")).ramGB, 16); }

TEST(HardwareInfo, ANumberWhereTextBelongsIsATypeMismatch) {
    std::string json = sampleJson;
    json.replace(json.find("\"a\""), 3, "7");
    EXPECT_EQ(errorOf(json), (CodingError{CodingError::Kind::typeMismatch, "os"}));
}

TEST(HardwareInfo, TheFirstErrorIsReported) {
    EXPECT_EQ(errorOf("{}"), (CodingError{CodingError::Kind::keyNotFound, "os"}));
}

TEST(HardwareInfo, KeysAreCaseSensitive) {
    for (const char* other : {"RamGB", "ram_gb", "", "ramGB "}) {
        std::string json = sampleJson;
        json.replace(json.find("ramGB"), 5, other);
        EXPECT_EQ(errorOf(json), (CodingError{CodingError::Kind::keyNotFound, "ramGB"}));
    }
}

TEST(HardwareInfo, AnExtraKeyIsIgnored) {
    std::string json = sampleJson;
    json.insert(1, R"("ram_gb":99,)");
    EXPECT_EQ(decoded(json).ramGB, 1);
}

}  // namespace
