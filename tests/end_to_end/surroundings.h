// The surroundings of the program in every end-to-end test: desktop, machine, opener, home and website.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/end_to_end/rig/accessibility.h"
#include "tests/end_to_end/rig/desktop_session.h"
#include "tests/end_to_end/rig/program.h"
#include "tests/end_to_end/rig/scripted_machine.h"
#include "tests/end_to_end/rig/scripted_opener.h"
#include "tests/support/files.h"
#include "tests/support/scripted_server.h"

namespace end_to_end {

using testSupport::always;
using testSupport::answerBytes;
using testSupport::heldBack;
using testSupport::HoldOpen;
using testSupport::RecordedRequest;
using testSupport::Responder;
using testSupport::Script;
using testSupport::ScriptedServer;
using testSupport::Send;
using testSupport::WaitUntilClientHasGone;

inline constexpr const char* sysctl = "/usr/sbin/sysctl";
inline constexpr const char* systemProfiler = "/usr/sbin/system_profiler";
inline constexpr const char* df = "/bin/df";

// The website's answer to an accepted submission.
inline constexpr const char* stored = R"({"success": true, "hardware_id": 42, "redirect_url": "/results"})";

// This process's only desktop session, started at the first call.
[[nodiscard]] DesktopSession& session();

// The port that this test process holds until it ends, and the program's built-in address on it, without trailing
// slash.
[[nodiscard]] int websitePort();
[[nodiscard]] std::string base();

// Accepts both reports, and answers a submission with `submissionAnswer`.
[[nodiscard]] Responder website(Script submissionAnswer);

// A Mac with an M1, an opener that works, and an empty home.
class Surroundings : public testing::Test {
  protected:
    void SetUp() override;

    [[nodiscard]] Program::Setting setting();

    // The text of the program's settings file; empty if there is none.
    [[nodiscard]] std::string settingsFile() const;

    testSupport::TemporaryFolder home_;
    ScriptedMachine machine_;
    ScriptedOpener opener_;
};

// The values of the five rows, in order.
[[nodiscard]] std::vector<std::string> valuesIn(const AccessibleProgram& window);

// The program's peak memory so far, in bytes.
[[nodiscard]] std::size_t peakMemoryOf(const Program& program);

// The value of `key` in a settings file, or "(absent)".
[[nodiscard]] std::string valueIn(const std::string& settings, const std::string& key);

}  // namespace end_to_end
