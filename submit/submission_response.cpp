#include "submit/submission_response.h"

#include <array>
#include <new>
#include <string_view>

#include "platform/browser.h"
#include "platform/dispatch.h"
#include "platform/json.h"
#include "platform/log.h"
#include "platform/text.h"
#include "submit/page_to_open.h"

using platform::log;

namespace {

constexpr int ok = 200;

// What is read out of an answer.
constexpr std::array<std::string_view, 4> answerKeys = {"success", "error", "hardware_id", "redirect_url"};

void fail(Submission& submission, std::string message, std::string_view logText, std::string_view logValue = {}) {
    log(logText, logValue);
    submission.errorMessage = std::move(message);
}

void open(const platform::Url& page, const std::optional<std::string>& hardwareId) {
    if (!platform::openInBrowser(page)) {
        log("❌ Failed to open URL: ", page.absoluteString());
        return;
    }
    log("✅ Opened URL: ", page.absoluteString());
    log("📋 Hardware ID: ", hardwareId ? *hardwareId : "none");
}

void openPageFor(platform::JsonObject answer, const std::string& baseUrl) {
    PageToOpen choice = pageToOpen(std::move(answer), baseUrl);
    if (choice.unusableRedirect) log("⚠️  Could not create valid URL from redirect: ", *choice.unusableRedirect);
    if (!choice.page) {
        log("❌ Could not create any valid URL to open");
        return;
    }
    platform::mainQueue::async(
        [page = std::move(*choice.page), hardwareId = std::move(choice.hardwareId)] { open(page, hardwareId); });
}

// Steps 2 to 9. Any of them may be the last.
void settle(std::optional<std::string> body, const std::optional<platform::HttpResponse>& response,
            Submission& submission) {
    // 2. Status. One other than 200 is told but decides nothing: the body does.
    if (response) {
        const std::string code = std::to_string(response->statusCode);
        log("📥 Response status: ", code);
        if (response->statusCode != ok) {
            fail(submission, "Server error: HTTP " + code, "❌ Server returned status: ", code);
        }
    }

    // 3. Is there a body? An empty one counts.
    if (!body) return fail(submission, "No data received", "❌ No data in response");

    // 4. The body, for whoever reads the log.
    if (platform::isUtf8(*body)) log("📥 Response body: ", *body);

    // 5. JSON.
    std::optional<platform::JsonObject> answer = platform::jsonObjectFrom(*body, answerKeys);
    body.reset();  // It may be large.
    if (!answer) return fail(submission, "Invalid JSON response", "❌ Could not parse JSON response");

    // 6. Verdict.
    const std::optional<bool> success = answer->boolean("success");
    if (!success) return fail(submission, "Invalid response format", "❌ Response missing 'success' field");

    // 7. Only here is the verdict set.
    submission.succeeded = *success;

    // 8. Refused.
    if (!*success) {
        std::string reason = answer->takeString("error").value_or("Unknown error");
        log("❌ Server returned error: ", reason);
        submission.errorMessage = std::move(reason);
        return;
    }

    // 9. Accepted. Posted before the caller is woken, so that the page opens before anything the caller posts.
    openPageFor(std::move(*answer), submission.baseUrl);
}

}  // namespace

void handleSubmissionAnswer(std::optional<std::string> body, const std::optional<platform::HttpResponse>& response,
                            const std::optional<platform::HttpError>& error, Submission& submission) {
    // 1. Transport error: whatever came with it does not count.
    if (error) {
        fail(submission, "Network error: " + error->localizedDescription,
             "❌ Network error: ", error->localizedDescription);
    } else {
        try {
            settle(std::move(body), response, submission);
        } catch (const std::bad_alloc&) {
            submission.succeeded = false;
            fail(submission, "Invalid JSON response", "❌ Could not parse JSON response");
        }
    }

    // 10. Wake the caller.
    submission.completion.release();
}
