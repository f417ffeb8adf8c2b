// The memory that a large answer takes, and what happens without enough memory.
#include <sys/resource.h>

#include <fstream>
#include <future>
#include <memory>
#include <ostream>

#include "tests/end_to_end/surroundings.h"
#include "tests/support/gzip_bomb.h"

namespace end_to_end {
namespace {

constexpr std::size_t mebibyte = std::size_t{1} << 20;

struct Shape {
    const char* name;
    std::string beginning;
    std::string repeated;
    std::string end;
};

std::ostream& operator<<(std::ostream& stream, const Shape& shape) { return stream << shape.name; }

std::string nameOf(const testing::TestParamInfo<Shape>& info) { return info.param.name; }

std::string bodyOf(const Shape& shape) {
    std::string block;
    while (block.size() < 65536) block += shape.repeated;
    std::string body = shape.beginning;
    while (body.size() < 8 * mebibyte) body += block;
    return body + shape.end;
}

// Repeats a character of two bytes in UTF-16 and three in UTF-8.
Shape inUtf16(const char* name, const std::string& beginning) {
    const auto wide = [](const std::string& ascii) {
        std::string bytes;
        for (const char character : ascii) bytes += {character, '\0'};
        return bytes;
    };
    return {name, wide(beginning), "\xAC\x20", wide("\"}")};
}

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define SKIP_WITH_SANITIZERS GTEST_SKIP() << "sanitizers use memory of their own"
#else
#define SKIP_WITH_SANITIZERS static_cast<void>(0)
#endif

class LargeAnswer : public Surroundings, public testing::WithParamInterface<Shape> {};

TEST_P(LargeAnswer, TakesAtMostThreeTimesItsSize) {
    SKIP_WITH_SANITIZERS;
    const std::string body = bodyOf(GetParam());
    const ScriptedServer server(website({Send{answerBytes(200, body)}}), websitePort());
    Program program(setting());
    const AccessibleProgram window(program.pid());
    ASSERT_TRUE(press(window, "Detect Hardware"));
    ASSERT_TRUE(shows(window, "Hardware detected successfully!"));
    const std::size_t before = peakMemoryOf(program);
    ASSERT_TRUE(press(window, "Send to Website"));
    ASSERT_TRUE(waitFor([&] {
        return window.label("Hardware data sent successfully! Opening website...") ||
               window.label("Error: Failed to send hardware data. Check the console for details.");
    }));
    const std::size_t taken = peakMemoryOf(program) - before;
    RecordProperty("percent_of_the_size", static_cast<int>(100 * taken / body.size()));
    EXPECT_LE(taken, 3 * body.size() + mebibyte);
    EXPECT_GE(taken, body.size() / 2) << "the answer was not read";
}

INSTANTIATE_TEST_SUITE_P(
    Shapes, LargeAnswer,
    testing::Values(Shape{"NoJson", "", "x", ""}, Shape{"NestedZeros", R"({"success":false,"a":[0)", ",0", "]}"},
                    Shape{"ManyMembers", R"({"success":false)", R"(,"":0)", "}"},
                    Shape{"ManyContainers", R"({"success":false,"a":[0)", ",[{}]", "]}"},
                    Shape{"ManyReasons", R"({"success":false)", R"(,"error":"x")", "}"},
                    Shape{"LongReason", R"({"success":false,"error":")", "x", "\"}"},
                    Shape{"LongEscapedReason", R"({"success":false,"error":")", "\\n", "\"}"},
                    Shape{"LongReasonWithOneEscape", R"({"success":false,"error":"\n)", "x", "\"}"},
                    inUtf16("LongReasonInUtf16", R"({"success":false,"error":")"),
                    inUtf16("LongRedirectInUtf16", R"({"success":true,"redirect_url":"/)"),
                    Shape{"LongKey", R"({"success":false,")", "\\n", "\":0}"},
                    Shape{"LongRedirect", R"({"success":true,"redirect_url":"/)", "x", "\"}"},
                    Shape{"LongAbsoluteRedirect", R"({"success":true,"redirect_url":"http://h/)", "x", "\"}"},
                    Shape{"LongHardwareId", R"({"success":true,"hardware_id":")", "x", "\"}"}),
    nameOf);

// Lets the program allocate at most `bytes` more.
void leaveMemory(const Program& program, std::size_t bytes) {
    std::ifstream status("/proc/" + std::to_string(program.pid()) + "/status");
    for (std::string line; std::getline(status, line);) {
        if (!line.starts_with("VmSize:")) continue;
        const rlim_t most = std::stoul(line.substr(7)) * 1024 + bytes;
        const rlimit limit{most, most};
        ASSERT_EQ(prlimit(program.pid(), RLIMIT_AS, &limit, nullptr), 0);
    }
}

// The website answers a submission once the test sets `release_`.
class DelayedAnswer : public Surroundings {
  protected:
    void startAndSend(const Script& answer) {
        server_ = std::make_unique<ScriptedServer>(
            heldBack("/save-detected-hardware/", release_.get_future(), website(answer)), websitePort());
        program_ = std::make_unique<Program>(setting());
        window_ = std::make_unique<AccessibleProgram>(program_->pid());
        ASSERT_TRUE(press(*window_, "Detect Hardware"));
        ASSERT_TRUE(press(*window_, "Send to Website"));
        ASSERT_TRUE(server_->waitForRequests(3));
    }

    std::promise<void> release_;
    std::unique_ptr<ScriptedServer> server_;
    std::unique_ptr<Program> program_;
    std::unique_ptr<AccessibleProgram> window_;
};

TEST_F(DelayedAnswer, AnAnswerTooLargeForMemoryFailsAndTheProgramGoesOn) {
    SKIP_WITH_SANITIZERS;
    startAndSend({Send{answerBytes(200, std::string(32 * mebibyte, 'x'))}});
    leaveMemory(*program_, 16 * mebibyte);
    release_.set_value();
    EXPECT_TRUE(shows(*window_, "Error: Failed to send hardware data. Check the console for details."));
    EXPECT_TRUE(program_->waitForLine("❌ Network error: cannot parse response"));
    EXPECT_TRUE(window_->field()->setText("http://still.alive.example"));
}

TEST_F(DelayedAnswer, AGzipBombIsRefusedWhileTheWindowResponds) {
    startAndSend(testSupport::gzipBomb());
    release_.set_value();
    ASSERT_TRUE(press(*window_, "Detect Hardware"));
    ASSERT_TRUE(shows(*window_, "Error: Failed to send hardware data. Check the console for details."));
    EXPECT_TRUE(program_->waitForLine("❌ Final error: Network error: resource exceeds maximum size"));
    ASSERT_TRUE(press(*window_, "Detect Hardware"));
    ASSERT_TRUE(shows(*window_, "Hardware detected successfully!"));
    const std::size_t peak = peakMemoryOf(*program_);
    RecordProperty("peak_mebibytes", static_cast<int>(peak / mebibyte));
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
    EXPECT_LT(peak, (256 + 128) * mebibyte);  // The largest answer and the program.
#endif
}

}  // namespace
}  // namespace end_to_end
