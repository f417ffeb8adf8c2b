// An HTTP exchange with a server that answers with arbitrary bytes, or with arbitrary header lines and a plain body.
#include <algorithm>
#include <cctype>
#include <cstdint>
#include <mutex>
#include <string>

#include "tests/contract/http_requests.h"
#include "tests/fuzz/require.h"

namespace {

std::mutex mutex;
std::string answer;

testSupport::Script currentAnswer(const testSupport::RecordedRequest&) {
    const std::lock_guard lock(mutex);
    return {testSupport::Send{answer}};
}

// True for a redirect, which could send a request to another machine.
bool mayRedirect(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) { return std::tolower(c); });
    return text.find("location") != std::string::npos;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const bool isWhole = data[0] % 2 == 0;
    const std::string bytes(reinterpret_cast<const char*>(data) + 1, size - 1);
    if (mayRedirect(bytes)) return 0;
    {
        const std::lock_guard lock(mutex);
        answer = isWhole ? bytes : "HTTP/1.1 200 OK\r\n" + bytes + "\r\n\r\nbody";
    }
    static const testSupport::ScriptedServer& server = *new testSupport::ScriptedServer(currentAnswer);
    const httpContract::Result result = httpContract::resultOf(httpContract::post(server.url("/")));
    if (result.answer) {
        fuzz::require(result.answer->statusCode >= 200 && result.answer->statusCode <= 999, "a strange status");
    }
    if (result.error) {
        fuzz::require(!result.error->localizedDescription.empty(), "an error without a description");
        fuzz::require(result.error->details.find('\n') == std::string::npos, "details of several lines");
    }
    return 0;
}
