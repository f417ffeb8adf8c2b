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

// Every test runs with proxies named that lead nowhere.
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
    platform::httpSession::start(std::move(request), [promise](auto body, auto response, auto error) {
        promise->set_value({std::move(body), response, std::move(error), std::this_thread::get_id()});
    });
    return promise->get_future();
}

Result resultOf(std::future<Result> future) {
    if (future.wait_for(longestWait) == std::future_status::ready) return future.get();
    ADD_FAILURE() << "the handler was not called";
    return {};
}

Result resultOf(HttpRequest request) { return resultOf(send(std::move(request))); }

HttpRequest get(const std::string& url, std::chrono::seconds timeoutInterval) {
    return {.url = Url::parse(url).value(), .headers = {}, .body = {}, .timeoutInterval = timeoutInterval};
}

HttpRequest post(const std::string& url, std::string body, std::chrono::seconds timeoutInterval) {
    return {.url = Url::parse(url).value(),
            .method = "POST",
            .headers = {{"Content-Type", "application/json"}},
            .body = std::move(body),
            .timeoutInterval = timeoutInterval};
}

void expectAnswer(const Result& result, int statusCode, const std::string& body) {
    EXPECT_FALSE(result.error.has_value()) << result.error->details;
    ASSERT_TRUE(result.response.has_value());
    EXPECT_EQ(result.response->statusCode, statusCode);
    ASSERT_TRUE(result.body.has_value());
    EXPECT_EQ(*result.body, body);
}

void expectError(const Result& result, int code, const std::string& localizedDescription) {
    EXPECT_FALSE(result.body.has_value());
    EXPECT_FALSE(result.response.has_value());
    ASSERT_TRUE(result.error.has_value());
    EXPECT_EQ(result.error->code, code) << result.error->details;
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
