// What every end-to-end test puts around the program: a desktop, a machine, an opener, a home and a website.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/end_to_end/rig/accessibility.h"
#include "tests/end_to_end/rig/desktop_session.h"
#include "tests/end_to_end/rig/program.h"
#include "tests/end_to_end/rig/scratch_folder.h"
#include "tests/end_to_end/rig/scripted_machine.h"
#include "tests/end_to_end/rig/scripted_opener.h"
#include "tests/support/scripted_server.h"

namespace end_to_end {

using testSupport::always;
using testSupport::answerBytes;
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

// What the website says when all went well.
inline constexpr const char* stored = R"({"success": true, "hardware_id": 42, "redirect_url": "/results"})";

// The one desktop of this test program, made at the first call.
[[nodiscard]] DesktopSession& session();

// The program's built-in address, without a slash at its end, and its port: this test process's alone until it ends.
[[nodiscard]] int websitePort();
[[nodiscard]] std::string base();

// Answers the reports by themselves and a submission by `submissionAnswer`.
[[nodiscard]] Responder website(Script submissionAnswer);

// The machine is a Mac with an M1, the opener works, the home is empty.
class Surroundings : public testing::Test {
  protected:
    void SetUp() override;

    [[nodiscard]] Program::Setting setting();

    // The text of the program's settings file, empty when there is none.
    [[nodiscard]] std::string settingsFile() const;

    ScratchFolder home_;
    ScriptedMachine machine_;
    ScriptedOpener opener_;
};

// Both wait; false when it does not come to that.
[[nodiscard]] bool press(const AccessibleProgram& window, const std::string& name);
[[nodiscard]] bool shows(const AccessibleProgram& window, const std::string& text);

// The most memory that the program has had so far, in bytes.
[[nodiscard]] std::size_t peakMemoryOf(const Program& program);

// What a settings file says for `key`, or "(absent)".
[[nodiscard]] std::string valueIn(const std::string& settings, const std::string& key);

}  // namespace end_to_end
