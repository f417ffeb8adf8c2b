#include "tests/contract/http_requests.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <utility>

namespace httpContract {

using platform::HttpError;
using platform::HttpRequest;
using platform::Url;

namespace {

// Names proxies that don't exist, in every test.
class ProxyVariables : public ::testing::Environment {
  public:
    void SetUp() override {
        for (const char* name : {"http_proxy", "https_proxy", "HTTPS_PROXY", "all_proxy", "ALL_PROXY"}) {
            ASSERT_EQ(setenv(name, "http://127.0.0.1:1", 1), 0);
        }
    }
};
const ::testing::Environment* const proxyVariables = ::testing::AddGlobalTestEnvironment(new ProxyVariables);

}  // namespace

std::future<Result> send(HttpRequest request) {
    const auto promise = std::make_shared<std::promise<Result>>();
    platform::httpSession::start(std::move(request), [promise](platform::HttpResult received) {
        Result result;
        if (auto* answer = std::get_if<platform::HttpAnswer>(&received)) result.answer = std::move(*answer);
        if (auto* error = std::get_if<platform::HttpError>(&received)) result.error = std::move(*error);
        result.thread = std::this_thread::get_id();
        promise->set_value(std::move(result));
    });
    return promise->get_future();
}

Result resultOf(std::future<Result> future) {
    if (future.wait_for(longestWait) == std::future_status::ready) return future.get();
    ADD_FAILURE() << "the handler was not called";
    return {{}, platform::HttpError{"", "the handler was not called"}, {}};
}

Result resultOf(HttpRequest request) { return resultOf(send(std::move(request))); }

HttpRequest post(const std::string& url, std::string body, std::chrono::seconds timeoutInterval) {
    return {.url = Url::parse(url).value(), .body = std::move(body), .timeoutInterval = timeoutInterval};
}

void expectAnswer(const Result& result, int statusCode, const std::string& body) {
    ASSERT_TRUE(result.answer.has_value()) << result.error->details;
    EXPECT_EQ(result.answer->statusCode, statusCode);
    EXPECT_EQ(result.answer->body, body);
}

void expectError(const Result& result, int code, const std::string& localizedDescription) {
    ASSERT_TRUE(result.error.has_value());
    EXPECT_EQ(result.error->localizedDescription, localizedDescription);
    const std::string details = "NSURLErrorDomain " + std::to_string(code) + " \"" + localizedDescription + "\" (";
    EXPECT_TRUE(result.error->details.starts_with(details)) << result.error->details;
    EXPECT_TRUE(result.error->details.ends_with(")")) << result.error->details;
    EXPECT_EQ(result.error->details.find_first_of("\r\n"), std::string::npos) << result.error->details;
}

void expectTimedOut(const Result& result) { expectError(result, -1001, "The request timed out."); }
void expectConnectionLost(const Result& result) { expectError(result, -1005, "The network connection was lost."); }

std::string redirectTo(int statusCode, const std::string& location) {
    return testSupport::answerBytes(statusCode, "moved", {"Location: " + location});
}

}  // namespace httpContract
