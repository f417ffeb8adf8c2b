// Content codings.
#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "tests/contract/http_requests.h"
#include "tests/support/scripted_server.h"
#include "tests/support/shell.h"

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

TEST(HttpSession, DecodesACodedBody) {
    const std::vector<std::tuple<std::string, std::string, std::string>> answers{
        {"gzip", gzipText, plainText},
        {"x-gzip", gzipText, plainText},
        {"GZip", gzipText, plainText},
        {"gzip", gzipText + gzipText, plainText + plainText},
        {"gzip", gzipText + "\0\0\0"s, plainText},
        {"deflate", zlibText, plainText},
        {"deflate", deflateText, plainText},
        {"gzip", "", ""},
        {"deflate", "", ""},
    };
    for (const auto& [coding, coded, plain] : answers) {
        SCOPED_TRACE(coding);
        const ScriptedServer server(always({Send{answerBytes(200, coded, {"content-encoding:  " + coding + " "})}}));

        expectAnswer(resultOf(post(server.url("/"))), 200, plain);
    }
}

TEST(HttpSession, DeliversABodyInAnUnknownCodingOrInSeveralAsItCame) {
    const std::vector<std::vector<std::string>> codings{
        {"Content-Encoding: br"},
        {"Content-Encoding: zstd"},
        {"Content-Encoding: identity"},
        {"Content-Encoding: none of them"},
        {"Content-Encoding:"},
        {"Content-Encoding: gzip, gzip"},
        {"Content-Encoding: gzip", "Content-Encoding: deflate"},
    };
    for (const auto& fields : codings) {
        SCOPED_TRACE(fields.front());
        const ScriptedServer server(always({Send{answerBytes(200, gzipText, fields)}}));

        expectAnswer(resultOf(post(server.url("/"))), 200, gzipText);
    }
}

TEST(HttpSession, ReportsACodedBodyThatIsBrokenOrCutShort) {
    std::string wrongSum = gzipText;
    wrongSum[gzipText.size() - 8] = '\x00';
    const std::vector<std::pair<std::string, std::string>> answers{
        {"gzip", "not gzip at all"},
        {"gzip", gzipText.substr(0, gzipText.size() - 12)},
        {"gzip", gzipText.substr(0, gzipText.size() - 1)},
        {"gzip", gzipText.substr(0, 1)},
        {"gzip", gzipText + gzipText.substr(0, 20)},
        {"gzip", wrongSum},
        {"deflate", "not deflate either"},
        {"deflate", zlibText.substr(0, zlibText.size() - 1)},
        {"deflate", deflateText.substr(0, deflateText.size() - 1)},
    };
    for (const auto& [coding, body] : answers) {
        SCOPED_TRACE(::testing::PrintToString(body));
        const ScriptedServer server(always({Send{answerBytes(200, body, {"Content-Encoding: " + coding})}}));

        expectError(resultOf(post(server.url("/"))), -1015, "cannot decode raw data");

        EXPECT_EQ(server.requests().size(), 1u);
    }
}

// As many zero bytes in gzip.
std::string gzipOfZeros(std::size_t count) {
    return shell("head -c " + std::to_string(count) + " /dev/zero | gzip -1").output;
}

constexpr std::size_t largestBody = std::size_t{256} << 20;

TEST(HttpSession, DecodesABodyOfTheLargestSize) {
    const std::string coded = gzipOfZeros(largestBody);
    const ScriptedServer server(always({Send{answerBytes(200, coded, {"Content-Encoding: gzip"})}}));

    const Result result = resultOf(post(server.url("/")));

    ASSERT_TRUE(result.body.has_value());
    EXPECT_EQ(result.body->size(), largestBody);
    EXPECT_EQ(result.body->find_first_not_of('\0'), std::string::npos);
}

TEST(HttpSession, ReportsABodyThatDecodesToMoreThanTheLargestSize) {
    std::string bomb;
    const std::string sixteenMebibytes = gzipOfZeros(std::size_t{16} << 20);
    for (int part = 0; part < 1024; ++part) bomb += sixteenMebibytes;
    for (const std::string& coded : {gzipOfZeros(largestBody + 1), bomb, bomb + "broken"}) {
        SCOPED_TRACE(coded.size());
        const ScriptedServer server(always({Send{answerBytes(200, coded, {"Content-Encoding: gzip"})}}));

        expectError(resultOf(post(server.url("/"))), -1103, "resource exceeds maximum size");
    }
}

}  // namespace
