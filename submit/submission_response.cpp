#include "submit/submission_response.h"

#include <array>
#include <new>
#include <string_view>
#include <variant>

#include "platform/browser.h"
#include "platform/dispatch.h"
#include "platform/json.h"
#include "platform/log.h"
#include "platform/text.h"
#include "submit/page_to_open.h"

using platform::log;

namespace {

// The members that are read.
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

// Any of the steps may be the last.
void settle(platform::HttpAnswer received, Submission& submission) {
    // 1. Status. One other than 200 is logged, but only the body decides.
    const std::string code = std::to_string(received.statusCode);
    log("📥 Response status: ", code);
    if (!received.isOk()) fail(submission, "Server error: HTTP " + code, "❌ Server returned status: ", code);

    // 2. The body, for whoever reads the log.
    if (platform::isUtf8(received.body)) log("📥 Response body: ", received.body);

    // 3. JSON. An empty body is not JSON.
    std::optional<platform::JsonObject> answer = platform::jsonObjectFrom(received.body, answerKeys);
    std::string().swap(received.body);  // It may be large.
    if (!answer) return fail(submission, "Invalid JSON response", "❌ Could not parse JSON response");

    // 4. Verdict.
    const std::optional<bool> success = answer->boolean("success");
    if (!success) return fail(submission, "Invalid response format", "❌ Response missing 'success' field");

    // 5. Only here is the verdict set.
    submission.succeeded = *success;

    // 6. Refused.
    if (!*success) {
        std::string reason = answer->takeString("error").value_or("Unknown error");
        log("❌ Server returned error: ", reason);
        submission.errorMessage = std::move(reason);
        return;
    }

    // 7. Accepted. Posted before the caller is woken, so that the page opens before anything the caller posts.
    openPageFor(std::move(*answer), submission.baseUrl);
}

}  // namespace

void handleSubmissionResult(platform::HttpResult result, Submission& submission) {
    // Wakes the caller on every path.
    struct Wake {
        Submission& submission;
        ~Wake() { submission.completion.release(); }
    } const wake{submission};

    if (const auto* error = std::get_if<platform::HttpError>(&result)) {
        fail(submission, "Network error: " + error->localizedDescription,
             "❌ Network error: ", error->localizedDescription);
    } else {
        try {
            settle(std::get<platform::HttpAnswer>(std::move(result)), submission);
        } catch (const std::bad_alloc&) {
            submission.succeeded = false;
            fail(submission, "Invalid JSON response", "❌ Could not parse JSON response");
        }
    }
}
