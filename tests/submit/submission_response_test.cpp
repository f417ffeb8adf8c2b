#include "submit/submission_response.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "tests/fakes/fakes.h"

namespace {

using fakes::answered;
using fakes::machine;
using Lines = std::vector<std::string>;

class SubmissionResponse : public testing::Test {
  protected:
    void SetUp() override { fakes::reset(); }

    void handle(platform::HttpResult result) {
        handleSubmissionResult(std::move(result), submission_);
        EXPECT_TRUE(submission_.completion.try_acquire());
        EXPECT_FALSE(submission_.completion.try_acquire()) << "released more than once";
    }

    Submission submission_{"http://site.example/"};
};

TEST_F(SubmissionResponse, ATransportErrorIsLoggedWithItsDescription) {
    handle(fakes::failed("too slow"));
    EXPECT_EQ(machine().log, Lines{"❌ Network error: too slow"});
    EXPECT_EQ(submission_.errorMessage, "Network error: too slow");
    EXPECT_FALSE(submission_.succeeded);
    EXPECT_TRUE(machine().mainQueue.empty());
}

TEST_F(SubmissionResponse, ABodyThatIsNoJsonObjectIsAnError) {
    for (const std::string body : {"", "[1]"}) {
        fakes::reset();
        handle(answered(200, body));
        EXPECT_EQ(machine().log,
                  (Lines{"📥 Response status: 200", "📥 Response body: " + body, "❌ Could not parse JSON response"}));
        EXPECT_EQ(submission_.errorMessage, "Invalid JSON response");
    }
}

TEST_F(SubmissionResponse, ABodyThatIsNotUtf8IsParsedButNotLogged) {
    std::string wide;
    for (const char character : std::string(R"({"success":true})")) wide += {character, '\0'};
    wide.insert(0, "\xFF\xFE");
    handle(answered(200, wide));
    EXPECT_EQ(machine().log, Lines{"📥 Response status: 200"});
    EXPECT_TRUE(submission_.succeeded);
}

TEST_F(SubmissionResponse, ABodyOfSeveralLinesIsLoggedVerbatim) {
    handle(answered(200, "{\n \"success\": false\n}"));
    EXPECT_EQ(machine().log[1], "📥 Response body: {\n \"success\": false\n}");
}

TEST_F(SubmissionResponse, AMissingSuccessIsAnError) {
    handle(answered(200, R"({"ok":true})"));
    EXPECT_EQ(machine().log, (Lines{"📥 Response status: 200", R"(📥 Response body: {"ok":true})",
                                    "❌ Response missing 'success' field"}));
    EXPECT_EQ(submission_.errorMessage, "Invalid response format");
}

TEST_F(SubmissionResponse, ASuccessThatIsNoBooleanIsAnError) {
    for (const char* body : {R"({"success":"true"})", R"({"success":2})", R"({"success":null})"}) {
        Submission submission{"http://site.example"};
        handleSubmissionResult(answered(200, body), submission);
        EXPECT_EQ(submission.errorMessage, "Invalid response format") << body;
        EXPECT_FALSE(submission.succeeded);
    }
}

TEST_F(SubmissionResponse, ARefusalGivesTheWebsitesReason) {
    handle(answered(200, R"({"success":false,"error":"full"})"));
    EXPECT_EQ(machine().log.back(), "❌ Server returned error: full");
    EXPECT_EQ(submission_.errorMessage, "full");
    EXPECT_TRUE(machine().mainQueue.empty());
}

TEST_F(SubmissionResponse, ARefusalWithoutAReasonIsAnUnknownError) {
    for (const char* body : {R"({"success":false})", R"({"success":false,"error":7})"}) {
        Submission submission{"http://site.example"};
        handleSubmissionResult(answered(200, body), submission);
        EXPECT_EQ(machine().log.back(), "❌ Server returned error: Unknown error");
        EXPECT_EQ(submission.errorMessage, "Unknown error");
    }
}

TEST_F(SubmissionResponse, ASuccessOpensThePageOnTheMainQueue) {
    handle(answered(200, R"({"success":true,"hardware_id":42,"redirect_url":"done"})"));
    EXPECT_TRUE(submission_.succeeded);
    EXPECT_EQ(submission_.errorMessage, std::nullopt);
    EXPECT_TRUE(machine().pagesAsked.empty());

    fakes::runMainQueue();
    EXPECT_EQ(machine().pagesAsked, Lines{"http://site.example/done?hardware_id=42"});
    EXPECT_EQ(machine().log[2], "✅ Opened URL: http://site.example/done?hardware_id=42");
    EXPECT_EQ(machine().log[3], "📋 Hardware ID: 42");
    EXPECT_EQ(machine().log.size(), 4U);
}

TEST_F(SubmissionResponse, ThePageIsPostedBeforeTheCallerIsWoken) {
    std::optional<bool> wokenBefore;
    machine().whenPosting = [&] { wokenBefore = submission_.completion.try_acquire(); };
    handle(answered(200, R"({"success":true})"));
    EXPECT_EQ(wokenBefore, false);
}

TEST_F(SubmissionResponse, WithoutAnIdTheLogSaysNone) {
    handle(answered(200, R"({"success":true})"));
    fakes::runMainQueue();
    EXPECT_EQ(machine().log.back(), "📋 Hardware ID: none");
}

TEST_F(SubmissionResponse, ASuccessCountsWithAnyStatus) {
    handle(answered(500, R"({"success":true,"redirect_url":"done"})"));
    EXPECT_TRUE(submission_.succeeded);
    EXPECT_EQ(submission_.errorMessage, "Server error: HTTP 500");
    EXPECT_EQ(machine().log, (Lines{"📥 Response status: 500", "❌ Server returned status: 500",
                                    R"(📥 Response body: {"success":true,"redirect_url":"done"})"}));
    fakes::runMainQueue();
    EXPECT_EQ(machine().pagesAsked, Lines{"http://site.example/done"});
}

TEST_F(SubmissionResponse, AnInvalidRedirectLogsAWarningAndOpensTheBaseUrl) {
    handle(answered(200, R"({"success":true,"redirect_url":"a b"})"));
    EXPECT_EQ(machine().log.back(), "⚠️  Could not create valid URL from redirect: a b");
    fakes::runMainQueue();
    EXPECT_EQ(machine().pagesAsked, Lines{"http://site.example/"});
}

TEST_F(SubmissionResponse, WithoutAnyValidPageTheSubmissionStillSucceeds) {
    Submission submission{"not a url"};
    handleSubmissionResult(answered(200, R"({"success":true})"), submission);
    EXPECT_TRUE(submission.succeeded);
    EXPECT_EQ(machine().log.back(), "❌ Could not create any valid URL to open");
    EXPECT_TRUE(machine().mainQueue.empty());
}

TEST_F(SubmissionResponse, AFailureToOpenThePageIsLoggedWithoutTheId) {
    machine().opensPages = false;
    handle(answered(200, R"({"success":true,"hardware_id":42})"));
    fakes::runMainQueue();
    EXPECT_EQ(machine().log.back(), "❌ Failed to open URL: http://site.example/?hardware_id=42");
    EXPECT_TRUE(submission_.succeeded);
}

}  // namespace
