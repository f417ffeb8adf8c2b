// The website's answer: arbitrary bytes keep general rules.
#include <fuzzer/FuzzedDataProvider.h>

#include "submit/submission_response.h"
#include "tests/fakes/fakes.h"
#include "tests/fuzz/require.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider provider(data, size);
    const int status = provider.ConsumeBool() ? 200 : provider.ConsumeIntegralInRange(100, 599);
    const std::string body = provider.ConsumeRemainingBytesAsString();

    fakes::reset();
    Submission submission("http://website.example/base");
    handleSubmissionResult(fakes::answered(status, body), submission);
    fuzz::require(submission.completion.try_acquire() && !submission.completion.try_acquire(), "not woken just once");
    fuzz::require(submission.succeeded || submission.errorMessage.has_value(), "a failure without a message");

    // Only http and https pages are opened, and only after a success.
    fakes::runMainQueue();
    const std::vector<std::string>& pages = fakes::machine().pagesAsked;
    fuzz::require(pages.size() == (submission.succeeded ? 1U : 0U), "a page without a success");
    for (const std::string& page : pages) {
        fuzz::require(page.starts_with("http://") || page.starts_with("https://"), "a page of another scheme");
    }
    return 0;
}
