// What becomes of a submission when the connection or the answer is not as it should be: every log line from the press
// on, the banner, the number of requests, the page.
#include <algorithm>
#include <fstream>
#include <future>

#include "tests/end_to_end/surroundings.h"
#include "tests/support/shell.h"

namespace end_to_end {
namespace {

using testSupport::answerBytes;
using testSupport::RecordedRequest;
using testSupport::Reset;
using testSupport::Responder;
using testSupport::Script;
using testSupport::ScriptedServer;
using testSupport::Send;
using testSupport::SendDripping;

using Lines = std::vector<std::string>;

constexpr const char* lost = "The network connection was lost.";
constexpr const char* submissionPath = "/save-detected-hardware/";

struct Fault {
    std::string name;
    Responder submission;  // Answers everything but the two reports.
    Lines lines;           // Between the line that names the endpoint and the last one.
    std::size_t requests = 1;
    bool succeeds = false;
};

std::string nameOf(const testing::TestParamInfo<Fault>& info) { return info.param.name; }

Responder answering(Script script) { return testSupport::always(std::move(script)); }

Responder sending(std::string bytes) { return answering({Send{std::move(bytes)}}); }

// The first request is sent on to "/next/", which tells how it was asked.
Responder redirecting(int status, std::string location = "/next/") {
    return [status, location = std::move(location)](const RecordedRequest& request) -> Script {
        if (request.target() != "/next/") return {Send{answerBytes(status, "", {"Location: " + location})}};
        const std::string asked = request.method() + (request.body().empty() ? " without" : " with");
        return {Send{answerBytes(200, R"({"success": false, "error": ")" + asked + " body\"}")}};
    };
}

Lines networkError(const std::string& words) {
    return {"❌ Network error: " + words, "❌ Final error: Network error: " + words};
}

Lines refused(const std::string& body, const std::string& error, int status = 200) {
    Lines lines = {"📥 Response status: " + std::to_string(status)};
    if (status != 200) lines.push_back("❌ Server returned status: " + std::to_string(status));
    lines.push_back("📥 Response body: " + body);
    lines.push_back("❌ Server returned error: " + error);
    lines.push_back("❌ Final error: " + error);
    return lines;
}

Lines notUnderstood(int status, const Lines& body) {
    Lines lines = {"📥 Response status: " + std::to_string(status)};
    if (status != 200) lines.push_back("❌ Server returned status: " + std::to_string(status));
    lines.insert(lines.end(), body.begin(), body.end());
    lines.emplace_back("❌ Could not parse JSON response");
    lines.emplace_back("❌ Final error: Invalid JSON response");
    return lines;
}

Lines accepted(const std::string& body, int status = 200) {
    Lines lines = {"📥 Response status: " + std::to_string(status)};
    if (status != 200) lines.push_back("❌ Server returned status: " + std::to_string(status));
    lines.push_back("📥 Response body: " + body);
    if (status != 200) lines.push_back("❌ Final error: Server error: HTTP " + std::to_string(status));
    lines.push_back("✅ Opened URL: " + base());
    lines.emplace_back("📋 Hardware ID: none");
    return lines;
}

Lines followed(const std::string& asked) {
    return refused(R"({"success": false, "error": ")" + asked + " body\"}", asked + " body");
}

constexpr const char* yes = R"({"success": true})";
constexpr const char* no = R"({"success": false, "error": "no"})";

// {"success": true}
std::string gzipped() {
    using namespace std::string_literals;
    return "\x1f\x8b\x08\x00\x00\x00\x00\x00\x02\x03\xab\x56\x2a\x2e\x4d\x4e\x4e\x2d\x2e\x56"
           "\xb2\x52\x28\x29\x2a\x4d\xad\x05\x00\x6f\x67\x09\xf1\x11\x00\x00\x00"s;
}

// Of a kilobyte each.
std::string headerFields(int count) {
    std::string fields;
    for (int field = 0; field < count; ++field) fields += "X-Filler: " + std::string(1012, 'x') + "\r\n";
    return fields;
}

std::vector<Fault> faults() {
    const std::string header = "HTTP/1.1 200 OK\r\nContent-Type: application/json\r\n";
    const std::string half = std::string(yes).substr(0, 8);
    return {
        {"ClosedBeforeTheHeader", answering({}), networkError(lost)},
        {"ResetBeforeTheHeader", answering({Reset{}}), networkError(lost)},
        {"ClosedWithinTheStatusLine", sending("HTTP/1.1 20"), networkError(lost)},
        {"ClosedWithinTheHeader", sending(header), networkError(lost)},
        {"ResetWithinTheHeader", answering({Send{header}, Reset{}}), networkError(lost)},
        {"ClosedAfterTheHeader", sending(header + "Content-Length: 17\r\n\r\n"), networkError(lost)},
        {"ClosedWithinABodyOfKnownLength", sending(header + "Content-Length: 17\r\n\r\n" + half), networkError(lost)},
        {"ResetWithinABody", answering({Send{header + "Content-Length: 17\r\n\r\n" + half}, Reset{}}),
         networkError(lost)},
        {"ClosedWithinAChunk", sending(header + "Transfer-Encoding: chunked\r\n\r\n11\r\n" + half), networkError(lost)},
        {"ClosedBetweenChunks", sending(header + "Transfer-Encoding: chunked\r\n\r\n11\r\n" + yes + "\r\n"),
         networkError(lost)},
        {"ChunkWithoutALength", sending(header + "Transfer-Encoding: chunked\r\n\r\nzz\r\n" + yes + "\r\n"),
         networkError(lost)},
        {"BodyUpToTheEndOfTheConnection", sending(header + "\r\n" + yes), accepted(yes), 1, true},
        {"BodyInTwoChunks",
         sending(header + "Transfer-Encoding: chunked\r\n\r\n8\r\n" + half + "\r\n9\r\n" + std::string(yes).substr(8) +
                 "\r\n0\r\n\r\n"),
         accepted(yes), 1, true},
        {"BodyThatDrips", answering({SendDripping{answerBytes(200, yes), std::chrono::milliseconds(2)}}), accepted(yes),
         1, true},
        {"InformationBeforeTheAnswer",
         sending("HTTP/1.1 100 Continue\r\n\r\nHTTP/1.1 103 Early Hints\r\nLink: </a>\r\n\r\n" + answerBytes(200, yes)),
         accepted(yes), 1, true},
        {"EmptyBody", sending(answerBytes(200, "")), notUnderstood(200, {"📥 Response body: "})},
        {"NoContent", sending("HTTP/1.1 204 No Content\r\n\r\n"), notUnderstood(204, {"📥 Response body: "})},
        {"NotModified", sending("HTTP/1.1 304 Not Modified\r\n\r\n"), notUnderstood(304, {"📥 Response body: "})},
        {"Html", sending(answerBytes(404, "<h1>Not Found</h1>\n")),
         notUnderstood(404, {"📥 Response body: <h1>Not Found</h1>", ""})},
        {"BytesThatAreNoText", sending(answerBytes(200, "\xFF\xFE\xFA")), notUnderstood(200, {})},
        {"SuccessWithAnErrorStatus", sending(answerBytes(500, yes)), accepted(yes, 500), 1, true},
        {"ErrorWithASuccessStatus", sending(answerBytes(200, no)), refused(no, "no")},
        {"MovedPermanently", redirecting(301), followed("GET without"), 2},
        {"Found", redirecting(302), followed("GET without"), 2},
        {"SeeOther", redirecting(303), followed("GET without"), 2},
        {"TemporaryRedirect", redirecting(307), followed("POST with"), 2},
        {"PermanentRedirect", redirecting(308), followed("POST with"), 2},
        {"RedirectWithoutATarget", sending(answerBytes(302, no)), refused(no, "no", 302)},
        {"RedirectInCircles", redirecting(307, submissionPath), networkError("too many HTTP redirects"), 17},
        {"RedirectToAFile", redirecting(302, "file:///etc/passwd"), networkError("unsupported URL")},
        {"RedirectToFtp", redirecting(302, "ftp://127.0.0.1/x"), networkError("unsupported URL")},
        {"CodingNobodyKnows", sending(answerBytes(200, "\x01\x02\xFF", {"Content-Encoding: br"})),
         notUnderstood(200, {})},
        {"GzipCutShort", sending(answerBytes(200, gzipped().substr(0, 20), {"Content-Encoding: gzip"})),
         networkError("cannot decode raw data")},
        {"Gzip", sending(answerBytes(200, gzipped(), {"Content-Encoding: gzip"})), accepted(yes), 1, true},
        {"BytesThatAreNoHttp", sending("\x16\x03\x01 garbage\r\n\r\n"), networkError("cannot parse response")},
        {"HeaderOfAMebibyte", sending(header + headerFields(1024) + "Content-Length: 17\r\n\r\n" + yes),
         networkError(lost)},
        {"HeaderFieldOfAHundredKilobytes", sending(answerBytes(200, yes, {"X-Long: " + std::string(90'000, 'x')})),
         accepted(yes), 1, true},
    };
}

class ConnectionFault : public Surroundings {
  protected:
    void expectOutcomeOf(const Fault& fault);
};

void ConnectionFault::expectOutcomeOf(const Fault& fault) {
    ScriptedServer server(
        [&fault](const RecordedRequest& request) -> Script {
            if (request.target() == "/api/track-install/") return {Send{answerBytes(200, "{}")}};
            if (request.target() == "/api/track-usage/") return {Send{answerBytes(200, "noted")}};
            return fault.submission(request);
        },
        websitePort());
    Program program(setting());
    ASSERT_EQ(program.failure(), std::nullopt);
    const AccessibleProgram window(program.pid());
    ASSERT_TRUE(program.waitForLine("   Response: noted"));
    const std::size_t before = program.log().size();
    ASSERT_TRUE(press(window, "Detect Hardware"));
    ASSERT_TRUE(press(window, "Send to Website"));

    Lines expected = {"📤 Sending hardware data to: " + base() + submissionPath};
    expected.insert(expected.end(), fault.lines.begin(), fault.lines.end());
    if (fault.succeeds) {
        EXPECT_TRUE(shows(window, "Hardware data sent successfully! Opening website...")) << window.tree();
        EXPECT_EQ(program.waitForExit(), (ExitStatus{ExitStatus::Kind::status, 0}));
        EXPECT_EQ(opener_.calls(), (std::vector<Lines>{{base()}}));
    } else {
        expected.emplace_back("❌ Failed to send hardware data. Check the console output above for details.");
        EXPECT_TRUE(shows(window, "Error: Failed to send hardware data. Check the console for details."))
            << window.tree();
        ASSERT_TRUE(program.waitForLine(expected.back()));
        EXPECT_TRUE(window.button("Send to Website")->enabled());
        EXPECT_TRUE(opener_.calls().empty());
    }
    Lines log = program.log();
    log.erase(log.begin(), log.begin() + static_cast<std::ptrdiff_t>(before));
    if (fault.succeeds) {  // The page is opened while the sender is told; which of the two logs first is left open.
        std::sort(log.begin(), log.end());
        std::sort(expected.begin(), expected.end());
    }
    EXPECT_TRUE(log == expected) << testing::PrintToString(log).substr(0, 2'000);
    EXPECT_EQ(server.requests().size(), 2 + fault.requests);
}

TEST_F(ConnectionFault, ABodyOf64MebibytesIsLoggedWhole) {
    const std::string body = R"({"success": false, "error": "no", "padding": ")" + std::string(64U << 20U, 'x') + "\"}";
    expectOutcomeOf({"", sending(answerBytes(200, body)), refused(body, "no")});
}

// 64 MiB of gzip, which would be 64 GiB.
TEST_F(ConnectionFault, ABombIsRefusedWithoutItsMemoryWhileTheWindowLives) {
    constexpr std::size_t mebibyte = std::size_t{1} << 20;
    const std::string part = testSupport::shell("head -c 67108864 /dev/zero | gzip -9").output;
    std::string bomb;
    while (bomb.size() < 64 * mebibyte) bomb += part;
    const std::string header = "HTTP/1.1 200 OK\r\nContent-Encoding: gzip\r\nContent-Length: ";
    std::promise<void> release;
    const ScriptedServer server(
        [&, free = release.get_future().share()](const RecordedRequest& request) -> Script {
            if (request.target() != submissionPath) return {Send{answerBytes(200, "{}")}};
            free.wait();
            return {Send{header + std::to_string(bomb.size()) + "\r\n\r\n" + bomb}};
        },
        websitePort());
    Program program(setting());
    const AccessibleProgram window(program.pid());
    ASSERT_TRUE(press(window, "Detect Hardware"));
    ASSERT_TRUE(press(window, "Send to Website"));
    ASSERT_TRUE(server.waitForRequests(3));
    release.set_value();
    ASSERT_TRUE(press(window, "Detect Hardware"));
    ASSERT_TRUE(shows(window, "Error: Failed to send hardware data. Check the console for details."));
    EXPECT_TRUE(program.waitForLine("❌ Final error: Network error: resource exceeds maximum size"));
    ASSERT_TRUE(press(window, "Detect Hardware"));
    ASSERT_TRUE(shows(window, "Hardware detected successfully!"));
    const std::size_t peak = peakMemoryOf(program);
    RecordProperty("peak_mebibytes", static_cast<int>(peak / mebibyte));
#ifndef __SANITIZE_ADDRESS__
    EXPECT_LT(peak, 256 * mebibyte);
#endif
}

TEST_F(ConnectionFault, ABodyThatNeverEndsIsRefused) {
    const std::string mebibyte(std::size_t{1} << 20, 'x');
    expectOutcomeOf({"", answering({Send{"HTTP/1.1 200 OK\r\n\r\n"}, testSupport::SendEndlessly{mebibyte}}),
                     networkError("resource exceeds maximum size")});
}

class ConnectionFaultTable : public ConnectionFault, public testing::WithParamInterface<Fault> {};

TEST_P(ConnectionFaultTable, EndsAsPromised) { expectOutcomeOf(GetParam()); }

INSTANTIATE_TEST_SUITE_P(Faults, ConnectionFaultTable, testing::ValuesIn(faults()), nameOf);

}  // namespace
}  // namespace end_to_end
