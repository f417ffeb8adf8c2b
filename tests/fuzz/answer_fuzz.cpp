// The website's answer: checks arbitrary bytes against general rules, and objects of random members against the oracle.
#include <fuzzer/FuzzedDataProvider.h>

#include <algorithm>
#include <iterator>

#include "submit/submission_response.h"
#include "tests/app/random_cases/oracle.h"
#include "tests/fakes/fakes.h"
#include "tests/fuzz/require.h"

namespace {

using fakes::machine;

const std::string address = "http://website.example/base";

void start() {
    machine().log.clear();
    machine().events.clear();
    machine().pagesAsked.clear();
    machine().mainQueue.clear();
}

// Only http and https pages are opened, and only after a success.
void requireGeneralRules(const Submission& submission) {
    fakes::runMainQueue();
    for (const std::string& page : machine().pagesAsked) {
        fuzz::require(page.rfind("http://", 0) == 0 || page.rfind("https://", 0) == 0, "a page of another scheme");
    }
    fuzz::require(machine().pagesAsked.size() == (submission.succeeded ? 1U : 0U), "a page without a success");
    fuzz::require(submission.succeeded || submission.errorMessage.has_value(), "a failure without a message");
}

void answerWith(const std::string& body, int status) {
    start();
    Submission submission(address);
    handleSubmissionResult(fakes::answered(status, body), submission);
    fuzz::require(submission.completion.try_acquire() && !submission.completion.try_acquire(), "not woken just once");
    requireGeneralRules(submission);
}

// A JSON string with only the escapes that the oracle supports.
std::string drawnText(FuzzedDataProvider& provider) {
    static constexpr const char* beginnings[] = {"",        "/",        "http://",     "https://",
                                                 "HTTP://", "file:///", "javascript:", "//"};
    static constexpr const char* pieces[] = {"/",   "?",    "&",    "=", "a", "page", "hardware_id", "%20",
                                             "b.c", "\\\"", "\\\\", " ", "é", "#",    "\\u00e9",     "\\n"};
    std::string text =
        std::string("\"") + beginnings[provider.ConsumeIntegralInRange<std::size_t>(0, std::size(beginnings) - 1)];
    const std::size_t count = provider.ConsumeIntegralInRange<std::size_t>(0, 6);
    for (std::size_t piece = 0; piece < count; ++piece) {
        text += pieces[provider.ConsumeIntegralInRange<std::size_t>(0, std::size(pieces) - 1)];
    }
    return text + "\"";
}

std::string drawnValue(FuzzedDataProvider& provider) {
    static constexpr const char* values[] = {"true", "false", "null", "[]", "{}", "7", "-1", "0"};
    const std::size_t choice = provider.ConsumeIntegralInRange<std::size_t>(0, std::size(values) + 3);
    return choice < std::size(values) ? values[choice] : drawnText(provider);
}

void compareWithOracle(FuzzedDataProvider& provider) {
    randomCases::Case round;
    round.status = provider.ConsumeBool() ? 200 : 500;
    if (provider.ConsumeBool()) round.members["success"] = provider.ConsumeBool() ? "true" : "false";
    for (const char* name : {"error", "hardware_id", "redirect_url"}) {
        if (provider.ConsumeBool()) round.members[name] = drawnValue(provider);
    }
    const std::string origin = "http://website.example";
    const randomCases::ExpectedBehaviour expected = randomCases::expectedBehaviour(round, origin);

    start();
    Submission submission(origin);
    handleSubmissionResult(fakes::answered(round.status, randomCases::bodyOf(round)), submission);
    requireGeneralRules(submission);
    fuzz::require(submission.succeeded == expected.ends, "another verdict");
    const auto text = [](const std::vector<std::string>& pages) { return pages.empty() ? "none" : pages.front(); };
    const std::string pages = text(machine().pagesAsked) + " instead of " + text(expected.pages);
    fuzz::require(machine().pagesAsked == expected.pages, (pages + "\n" + randomCases::literalOf(round)).c_str());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider provider(data, size);
    if (provider.ConsumeBool()) {
        compareWithOracle(provider);
    } else {
        const int status = provider.ConsumeBool() ? 200 : provider.ConsumeIntegralInRange(100, 599);
        answerWith(provider.ConsumeRemainingBytesAsString(), status);
    }
    return 0;
}
