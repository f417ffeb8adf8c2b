// Missing threads and descriptors. Each test runs in a process that has not used the session.
#include "platform/http.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cstdlib>
#include <optional>
#include <semaphore>
#include <utility>
#include <variant>

#include "tests/contract/http_requests.h"
#include "tests/support/scripted_server.h"

namespace {

using namespace httpContract;
using namespace testSupport;
using platform::HttpError;

// Returns 0 if the session behaves as expected.
int answerWithoutThreads() {
    const ScriptedServer server(always({Send{answerBytes(200, "after all")}}));
    rlimit limit{};
    getrlimit(RLIMIT_NPROC, &limit);
    const rlim_t before = std::exchange(limit.rlim_cur, 1);
    // The limit does not bind root.
    if (setrlimit(RLIMIT_NPROC, &limit) != 0 || (geteuid() == 0 && setuid(65534) != 0)) return 1;

    int calls = 0;
    std::optional<HttpError> error;
    platform::httpSession::start(post(server.url("/")), [&](const platform::HttpResult& result) {
        if (const auto* theError = std::get_if<HttpError>(&result)) error = *theError;
        ++calls;
    });
    if (calls != 1 || !error || error->localizedDescription != "unknown error") return 2;

    limit.rlim_cur = before;
    setrlimit(RLIMIT_NPROC, &limit);
    const Result result = resultOf(post(server.url("/")));
    return result.answer && result.answer->body == "after all" ? 0 : 3;
}

TEST(HttpSessionDeathTest, ReportsAnErrorIfNoThreadCanStartAndRetriesWithTheNextRequest) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");

    EXPECT_EXIT(std::exit(answerWithoutThreads()), ::testing::ExitedWithCode(0), "");
}

int answerWithFreeDescriptors(int count) {
    const ScriptedServer server(always({Send{answerBytes(200, "after all")}}));
    rlimit limit{};
    getrlimit(RLIMIT_NOFILE, &limit);
    const int lowestFree = dup(STDERR_FILENO);
    close(lowestFree);
    const rlim_t before = std::exchange(limit.rlim_cur, static_cast<rlim_t>(lowestFree + count));
    setrlimit(RLIMIT_NOFILE, &limit);
    // No std::promise: the sanitizers need a descriptor to check it.
    std::binary_semaphore called{0};
    bool failed = false;
    platform::httpSession::start(post(server.url("/")), [&](const platform::HttpResult& result) {
        failed = std::holds_alternative<HttpError>(result);
        called.release();
    });
    if (!called.try_acquire_for(longestWait) || !failed) return 2;
    limit.rlim_cur = before;
    setrlimit(RLIMIT_NOFILE, &limit);
    const Result result = resultOf(post(server.url("/")));
    return result.answer && result.answer->body == "after all" ? 0 : 3;
}

TEST(HttpSessionDeathTest, ReportsAnErrorWithoutFreeDescriptorsAndRetriesWithTheNextRequest) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");

    // Loading libcurl needs one for a moment; waking and connecting need more.
    for (const int count : {0, 1}) {
        EXPECT_EXIT(std::exit(answerWithFreeDescriptors(count)), ::testing::ExitedWithCode(0), "") << count;
    }
}

}  // namespace
