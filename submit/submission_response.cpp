#include "submit/submission_response.h"

#include <string_view>

#include "platform/dispatch.h"
#include "platform/json.h"
#include "platform/log.h"
#include "platform/text.h"
#include "platform/workspace.h"
#include "submit/page_to_open.h"

using platform::log;

namespace {

constexpr int ok = 200;

void fail(Submission& submission, std::string message, const std::string& logLine) {
    submission.errorMessage = std::move(message);
    log(logLine);
}

std::string reasonIn(const platform::JsonObject& answer) {
    const platform::JsonValue* error = answer.find("error");
    const std::string* reason = error != nullptr ? error->asString() : nullptr;
    return reason != nullptr ? *reason : "Unknown error";
}

void open(const platform::Url& page, const std::optional<HardwareId>& hardwareId) {
    if (!platform::openInBrowser(page)) {
        log("❌ Failed to open URL: ", page.absoluteString());
        return;
    }
    log("✅ Opened URL: ", page.absoluteString());
    log("📋 Hardware ID: ", (hardwareId ? textOf(*hardwareId) : "none"));
}

void openPageFor(const platform::JsonObject& answer, const std::string& baseUrl) {
    const PageToOpen choice = pageToOpen(answer, baseUrl);
    if (choice.unusableRedirect) log("⚠️  Could not create valid URL from redirect: ", *choice.unusableRedirect);
    if (!choice.page) {
        log("❌ Could not create any valid URL to open");
        return;
    }
    platform::mainQueue::async([page = *choice.page, hardwareId = choice.hardwareId] { open(page, hardwareId); });
}

// Steps 2 to 9. Any of them may be the last.
void settle(const std::optional<std::string>& body, const std::optional<platform::HttpResponse>& response,
            Submission& submission) {
    // 2. Status. One other than 200 is told but decides nothing: the body does.
    if (response) {
        const std::string code = std::to_string(response->statusCode);
        log("📥 Response status: ", code);
        if (response->statusCode != ok) {
            fail(submission, "Server error: HTTP " + code, "❌ Server returned status: " + code);
        }
    }

    // 3. Is there a body? One of no bytes is one.
    if (!body) return fail(submission, "No data received", "❌ No data in response");

    // 4. The body, for whoever reads the log.
    if (platform::isUtf8(*body)) log("📥 Response body: ", *body);

    // 5. JSON.
    const std::optional<platform::JsonObject> answer = platform::jsonObjectFrom(*body);
    if (!answer) return fail(submission, "Invalid JSON response", "❌ Could not parse JSON response");

    // 6. Verdict.
    const platform::JsonValue* member = answer->find("success");
    const std::optional<bool> success = member != nullptr ? member->asBool() : std::nullopt;
    if (!success) return fail(submission, "Invalid response format", "❌ Response missing 'success' field");

    // 7. The one place where it is taken down.
    submission.succeeded = *success;

    // 8. Refused.
    if (!*success) {
        const std::string reason = reasonIn(*answer);
        return fail(submission, reason, "❌ Server returned error: " + reason);
    }

    // 9. Accepted. Posted before the caller is woken, so that the page opens before anything the caller posts.
    openPageFor(*answer, submission.baseUrl);
}

}  // namespace

void handleSubmissionAnswer(const std::optional<std::string>& body,
                            const std::optional<platform::HttpResponse>& response,
                            const std::optional<platform::HttpError>& error, Submission& submission) {
    // 1. Transport error: whatever came with it does not count.
    if (error) {
        fail(submission, "Network error: " + error->localizedDescription,
             "❌ Network error: " + error->localizedDescription);
    } else {
        settle(body, response, submission);
    }

    // 10. Wake the caller.
    submission.completion.release();
}
