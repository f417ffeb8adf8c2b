#include <gtest/gtest.h>
#include <sys/resource.h>

#include <cstdlib>
#include <string>
#include <utility>

#include "submit/submission_response.h"
#include "tests/fakes/fakes.h"

namespace {

using fakes::answered;

// Returns 0 if the outcome is as expected.
int settleWithoutMemoryForTheReason() {
    std::string body = R"({"success":false,"error":")" + std::string(std::size_t{256} << 20U, 'x') + "\"}";
    rlimit limit{};
    getrlimit(RLIMIT_AS, &limit);
    limit.rlim_cur = std::size_t{400} << 20U;  // Enough for the body, but not for a copy.
    if (setrlimit(RLIMIT_AS, &limit) != 0) return 1;
    Submission submission("http://site.example");
    handleSubmissionResult(answered(200, std::move(body)), submission);
    if (!submission.completion.try_acquire()) return 2;
    return submission.errorMessage == "Invalid JSON response" && !submission.succeeded ? 0 : 3;
}

TEST(SubmissionResponseDeathTest, ALackOfMemoryCountsAsInvalidJson) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(std::exit(settleWithoutMemoryForTheReason()), ::testing::ExitedWithCode(0), "");
}

}  // namespace
