// How much memory an answer takes.
#include <ostream>

#include "tests/end_to_end/surroundings.h"

namespace end_to_end {
namespace {

using testSupport::answerBytes;
using testSupport::ScriptedServer;
using testSupport::Send;

constexpr std::size_t size = std::size_t{32} << 20;

struct Shape {
    const char* name;
    std::string beginning;
    std::string repeated;
    std::string end;
};

std::ostream& operator<<(std::ostream& stream, const Shape& shape) { return stream << shape.name; }

std::string nameOf(const testing::TestParamInfo<Shape>& info) { return info.param.name; }

std::string bodyOf(const Shape& shape) {
    std::string body = shape.beginning;
    body.reserve(size + shape.repeated.size() + shape.end.size());
    while (body.size() < size) body += shape.repeated;
    return body + shape.end;
}

class LargeAnswer : public Surroundings, public testing::WithParamInterface<Shape> {};

TEST_P(LargeAnswer, TakesThreeTimesItsSizeAtMost) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    GTEST_SKIP() << "a sanitizer takes memory of its own";
#endif
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
    EXPECT_LE(taken, 3 * body.size());
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
                    Shape{"LongKey", R"({"success":false,")", "\\n", "\":0}"},
                    Shape{"LongRedirect", R"({"success":true,"redirect_url":"/)", "x", "\"}"},
                    Shape{"LongAbsoluteRedirect", R"({"success":true,"redirect_url":"http://h/)", "x", "\"}"},
                    Shape{"LongHardwareId", R"({"success":true,"hardware_id":")", "x", "\"}"}),
    nameOf);

}  // namespace
}  // namespace end_to_end
