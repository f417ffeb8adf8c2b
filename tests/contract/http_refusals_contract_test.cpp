// What the system refuses. Each in a process of its own, where the session has not begun.
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#ifdef __linux__
#include <sched.h>
#endif

#include <cstdlib>
#include <optional>
#include <utility>

#include "platform/http.h"
#include "tests/contract/http_requests.h"
#include "tests/support/scripted_server.h"

namespace {

using namespace httpContract;
using namespace testSupport;
using platform::HttpError;

// Zero when all is as it should be.
int answerWithoutThreads() {
    const ScriptedServer server(always({Send{answerBytes(200, "after all")}}));
    rlimit limit{};
    getrlimit(RLIMIT_NPROC, &limit);
    const rlim_t before = std::exchange(limit.rlim_cur, 1);
    // The superuser is above that limit.
    if (setrlimit(RLIMIT_NPROC, &limit) != 0 || (geteuid() == 0 && setuid(65534) != 0)) return 1;

    int calls = 0;
    std::optional<HttpError> error;
    platform::httpSession::start(get(server.url("/")), [&](auto body, auto response, auto theError) {
        if (!body && !response) error = theError;
        ++calls;
    });
    if (calls != 1 || !error || error->code != -1) return 2;

    limit.rlim_cur = before;
    setrlimit(RLIMIT_NPROC, &limit);
    const Result result = resultOf(get(server.url("/")));
    return result.body == "after all" ? 0 : 3;
}

TEST(HttpSessionDeathTest, AnswersWithAnErrorWhenNoThreadCanStartAndTriesAgainWithTheNextRequest) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");

    EXPECT_EXIT(std::exit(answerWithoutThreads()), ::testing::ExitedWithCode(0), "");
}

int answerWithoutDescriptors() {
    const ScriptedServer server(always({Send{answerBytes(200, "after all")}}));
    rlimit limit{};
    getrlimit(RLIMIT_NOFILE, &limit);
    const int lowestFree = dup(STDERR_FILENO);
    close(lowestFree);
    const rlim_t before = std::exchange(limit.rlim_cur, static_cast<rlim_t>(lowestFree));
    setrlimit(RLIMIT_NOFILE, &limit);
    const Result refused = resultOf(get(server.url("/")));
    limit.rlim_cur = before;
    setrlimit(RLIMIT_NOFILE, &limit);
    if (!refused.error || refused.response) return 2;
    return resultOf(get(server.url("/"))).body == "after all" ? 0 : 3;
}

TEST(HttpSessionDeathTest, AnswersWithAnErrorWhenNoDescriptorIsFreeAndTriesAgainWithTheNextRequest) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");

    EXPECT_EXIT(std::exit(answerWithoutDescriptors()), ::testing::ExitedWithCode(0), "");
}

#ifdef __linux__
constexpr int noRightToTry = 77;

int lookUpANameWithoutANetwork() {
    if (unshare(CLONE_NEWNET | (geteuid() == 0 ? 0 : CLONE_NEWUSER)) != 0) return noRightToTry;
    const Result result = resultOf(get("http://name.invalid/"));
    return result.error && result.error->code == -1009 ? 0 : 1;
}

TEST(HttpSessionDeathTest, ReportsThatThereIsNoNetworkWhenNoNameCanBeFound) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    int exitCode = -1;

    EXPECT_EXIT(
        std::exit(lookUpANameWithoutANetwork()),
        [&](int status) {
            exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
            return exitCode == 0 || exitCode == noRightToTry;
        },
        "");
    if (exitCode == noRightToTry)
        GTEST_SKIP() << (geteuid() == 0 ? "needs a network of its own (CAP_SYS_ADMIN)"
                                        : "needs a network of its own (user namespaces)");
}
#endif

}  // namespace
