// The website's answers to the two reports: what is logged and what is stored.
#include <fuzzer/FuzzedDataProvider.h>

#include "platform/json.h"
#include "platform/text.h"
#include "tests/fakes/fakes.h"
#include "tests/fuzz/require.h"
#include "tracking/app_tracker.h"

namespace {

using Lines = std::vector<std::string>;

Lines installLines(int status, const std::string& body) {
    Lines lines = {"📥 Response status: " + std::to_string(status)};
    const bool isText = platform::isUtf8(body);
    if (status != 200) lines.push_back("⚠️ Install tracking returned status: " + std::to_string(status));
    if (status == 200 && isText) lines.emplace_back("✅ Install tracked successfully");
    if (isText) lines.push_back("   Response: " + body);
    if (status == 200 && isText) {
        if (const auto answer = platform::jsonObjectFrom(body)) {
            const auto* created = std::get_if<bool>(answer->find("created"));
            const bool isNew = created != nullptr && *created;
            lines.emplace_back(isNew ? "   📝 New install created" : "   ♻️ Install already existed, updated");
        }
    }
    if (status != 200 || !isText) lines.emplace_back("⚠️ Install tracking may have failed. Check the logs above.");
    return lines;
}

Lines usageLines(int status, const std::string& body) {
    Lines lines;
    const bool isText = platform::isUtf8(body);
    if (status != 200) lines.push_back("⚠️ Usage tracking returned status: " + std::to_string(status));
    if (status == 200 && isText) lines.emplace_back("✅ Usage tracked successfully");
    if (isText) lines.push_back("   Response: " + body);
    return lines;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider provider(data, size);
    const int install = provider.ConsumeBool() ? 200 : provider.ConsumeIntegralInRange(100, 599);
    const int usage = provider.ConsumeBool() ? 200 : provider.ConsumeIntegralInRange(100, 599);
    const std::string usageBody = provider.ConsumeRandomLengthString();
    const std::string installBody = provider.ConsumeRemainingBytesAsString();

    fakes::reset();
    fakes::machine().website = [&](const platform::HttpRequest& request) {
        const bool isInstall = request.url.absoluteString().find("install") != std::string::npos;
        return isInstall ? fakes::answered(install, installBody) : fakes::answered(usage, usageBody);
    };
    AppTracker::trackUsage("http://website.example/");
    fakes::waitForSession();

    Lines expected = {"📤 Attempting to track install to: http://website.example/api/track-install/",
                      "📤 Device ID: PLATFORM-UUID"};
    for (const Lines& more : {installLines(install, installBody),
                              Lines{"📤 Attempting to track usage to: http://website.example/api/track-usage/"},
                              usageLines(usage, usageBody)}) {
        expected.insert(expected.end(), more.begin(), more.end());
    }
    fuzz::require(fakes::machine().log == expected, "other lines");
    const bool isKept = fakes::machine().defaults.count("com.velmora.install_tracked") != 0;
    fuzz::require(isKept == (install == 200 && platform::isUtf8(installBody)), "another flag");
    fuzz::require(fakes::machine().requests.size() == 2, "not two requests");
    return 0;
}
