// Content codings.
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "tests/contract/http_requests.h"
#include "tests/support/gzip_bomb.h"
#include "tests/support/scripted_server.h"

namespace {

using namespace std::string_literals;
using namespace httpContract;
using namespace testSupport;

const std::string plainText = "plain text, plain text";
const std::string gzipText =
    "\x1f\x8b\x08\x00\x00\x00\x00\x00\x02\x03\x2b\xc8\x49\xcc\xcc\x53\x28\x49\xad\x28\xd1\x51\x28\x80\xb3\x01\x2f\xca\x77\xdd\x16\x00\x00\x00"s;
const std::string zlibText =
    "\x78\xda\x2b\xc8\x49\xcc\xcc\x53\x28\x49\xad\x28\xd1\x51\x28\x80\xb3\x01\x5e\x86\x08\x3f"s;
const std::string deflateText = "\x2b\xc8\x49\xcc\xcc\x53\x28\x49\xad\x28\xd1\x51\x28\x80\xb3\x01"s;

Result resultOfCoded(const std::string& coding, const std::string& body) {
    const ScriptedServer server(always({Send{answerBytes(200, body, {"content-encoding:  " + coding + " "})}}));
    return resultOf(post(server.url("/")));
}

TEST(HttpSession, DecodesACodedBody) {
    for (const std::string coding : {"gzip", "x-gzip", "GZip"}) {
        SCOPED_TRACE(coding);
        expectAnswer(resultOfCoded(coding, gzipText), 200, plainText);
    }
    expectAnswer(resultOfCoded("deflate", zlibText), 200, plainText);
    expectAnswer(resultOfCoded("deflate", deflateText), 200, plainText);
}

TEST(HttpSession, DeliversAnUncodedBodyUnchanged) {
    expectAnswer(resultOfCoded("identity", gzipText), 200, gzipText);
    expectAnswer(resultOfCoded("", gzipText), 200, gzipText);
    expectAnswer(resultOfCoded("gzip", ""), 200, "");
}

TEST(HttpSession, ReportsABodyThatCannotBeDecoded) {
    std::string wrongSum = gzipText;
    wrongSum[gzipText.size() - 8] = '\x00';
    const std::vector<std::pair<std::string, std::string>> answers{
        {"unknown", plainText},      {"gzip, unknown", gzipText},
        {"gzip", "not gzip at all"}, {"deflate", "not deflate either"},
        {"gzip", wrongSum},
    };
    for (const auto& [coding, body] : answers) {
        SCOPED_TRACE(::testing::PrintToString(body));
        expectError(resultOfCoded(coding, body), -1015, "cannot decode raw data");
    }
}

TEST(HttpSession, DeliversTheDecodablePartOfATruncatedCodedBody) {
    const Result inTheMiddle = resultOfCoded("gzip", gzipText.substr(0, 20));
    ASSERT_TRUE(inTheMiddle.answer.has_value());
    EXPECT_EQ(inTheMiddle.answer->body, plainText.substr(0, inTheMiddle.answer->body.size()));
    EXPECT_LT(inTheMiddle.answer->body.size(), plainText.size());

    expectAnswer(resultOfCoded("gzip", gzipText.substr(0, 1)), 200, "");
    expectAnswer(resultOfCoded("gzip", gzipText.substr(0, gzipText.size() - 1)), 200, plainText);
}

constexpr std::size_t largestBody = std::size_t{256} << 20;

TEST(HttpSession, DecodesABodyOfTheLargestSize) {
    const Result result = resultOfCoded("deflate", deflateOfZeros(largestBody));

    ASSERT_TRUE(result.answer.has_value());
    EXPECT_TRUE(result.answer->body == std::string(largestBody, '\0'));
}

TEST(HttpSession, ReportsABodyThatDecodesToMoreThanTheLargestSize) {
    expectError(resultOfCoded("deflate", deflateOfZeros(largestBody + 1)), -1103, "resource exceeds maximum size");

    const ScriptedServer endless(always(gzipBomb()));
    expectError(resultOf(post(endless.url("/"))), -1103, "resource exceeds maximum size");
}

TEST(HttpSession, ReportsAnEndlessBodyThatDecodesToNothing) {
    std::string emptyBlocks;
    for (int block = 0; block < 100'000; ++block) emptyBlocks += "\x00\x00\x00\xff\xff"s;
    const ScriptedServer server(always({Send{gzipHeader()}, SendEndlessly{emptyBlocks}}));

    expectError(resultOf(post(server.url("/"))), -1103, "resource exceeds maximum size");
}

}  // namespace
