#include "tests/app/random_cases/oracle.h"

#include <algorithm>
#include <cstdint>
#include <optional>

#include "tests/app/random_cases/plain_text.h"

namespace randomCases {

namespace {

// Finds the first "label, white space, rest of the line" whose rest is not empty, and returns what follows its last
// colon.
std::optional<Text> labelled(const Text& text, const Text& label) {
    for (std::size_t at = text.find(label); at != Text::npos; at = text.find(label, at + 1)) {
        std::size_t value = at + label.size();
        while (value < text.size() && isBlankOrLineBreak(text[value])) ++value;
        // The rest of the line may consist of white space.
        while (value > at + label.size() && (value == text.size() || isLineBreak(text[value]))) --value;
        if (value == text.size() || isLineBreak(text[value])) continue;
        std::size_t end = value;
        while (end < text.size() && !isLineBreak(text[end])) ++end;
        const Text match = text.substr(at, end - at);
        return trimmed(match.substr(match.rfind(U':') + 1), isBlank);
    }
    return std::nullopt;
}

std::int64_t storage(const std::string& output) {
    constexpr std::int64_t fallback = 512;
    const auto text = decoded(output);
    if (!text) return fallback;
    const std::size_t first = text->find(U'\n');
    if (first == Text::npos) return fallback;
    const Text line = text->substr(first + 1, text->find(U'\n', first + 1) - first - 1);
    std::vector<Text> columns(1);
    for (const char32_t c : line) {
        if (!isBlank(c)) {
            columns.back() += c;
        } else if (!columns.back().empty()) {
            columns.emplace_back();
        }
    }
    if (columns.back().empty()) columns.pop_back();
    if (columns.size() < 2) return fallback;
    Text size = columns[1];
    size.erase(std::remove(size.begin(), size.end(), U'G'), size.end());
    return integer(size).value_or(fallback);
}

std::string member(const Case& round, const std::string& name) {
    const auto found = round.members.find(name);
    return found == round.members.end() ? "" : found->second;
}

// The id as text: a string, an integer, or a boolean as 1 or 0.
std::optional<std::string> hardwareId(const Case& round) {
    const std::string json = member(round, "hardware_id");
    if (const auto text = stringIn(json)) return text;
    if (json == "true") return "1";
    if (json == "false") return "0";
    if (!json.empty() && integer(*decoded(json))) return json;
    return std::nullopt;
}

// True if the text has only characters of a URL and at most one fragment.
bool isUrl(const std::string& text) {
    return std::count(text.begin(), text.end(), '#') <= 1 && std::all_of(text.begin(), text.end(), [](char c) {
               return c > ' ' && c < 0x7F && std::string("\"<>\\^`{|}").find(c) == std::string::npos;
           });
}

std::string withoutOuterSlashes(std::string text) {
    while (!text.empty() && text.back() == '/') text.pop_back();
    return text;  // There are none at the start: it begins with "http".
}

// The page to open after a success. Logs the warning about an invalid redirect.
std::optional<std::string> page(const Case& round, const std::string& address, std::vector<std::string>& log) {
    const std::optional<std::string> id = hardwareId(round);
    const std::string redirect = stringIn(member(round, "redirect_url")).value_or("");
    if (!redirect.empty()) {
        std::string target = redirect;
        if (redirect.rfind("http://", 0) != 0 && redirect.rfind("https://", 0) != 0) {
            if (target[0] != '/') target = "/" + target;
            if (id && target.find("hardware_id") == std::string::npos) {
                target += (target.find('?') == std::string::npos ? "?hardware_id=" : "&hardware_id=") + *id;
            }
            target = withoutOuterSlashes(address) + target;
        }
        if (isUrl(target)) return target;
        log.push_back("⚠️  Could not create valid URL from redirect: " + redirect);
    } else if (id) {
        const std::string target =
            address + (address.find('?') == std::string::npos ? "?hardware_id=" : "&hardware_id=") + *id;
        if (isUrl(target)) return target;
    }
    return address;
}

struct Verdict {
    std::optional<std::string> error;
    bool accepted = false;
};

Verdict verdict(const Case& round, std::vector<std::string>& log) {
    Verdict verdict;
    log.push_back("📥 Response status: " + std::to_string(round.status));
    if (round.status != 200) {
        verdict.error = "Server error: HTTP " + std::to_string(round.status);
        log.push_back("❌ Server returned status: " + std::to_string(round.status));
    }
    const std::string body = bodyOf(round);
    if (decoded(body)) log.push_back("📥 Response body: " + body);
    const std::string success = member(round, "success");
    if (!round.isObject) {
        verdict.error = "Invalid JSON response";
        log.emplace_back("❌ Could not parse JSON response");
    } else if (success == "true") {
        verdict.accepted = true;
    } else if (success == "false") {
        verdict.error = stringIn(member(round, "error")).value_or("Unknown error");
        log.push_back("❌ Server returned error: " + *verdict.error);
    } else {
        verdict.error = "Invalid response format";
        log.emplace_back("❌ Response missing 'success' field");
    }
    return verdict;
}

}  // namespace

ExpectedBehaviour expectedBehaviour(const Case& round, const std::string& base) {
    ExpectedBehaviour expected;

    Text processor = U"Unknown";
    if (const auto brand = decoded(round.brand)) processor = trimmed(*brand, isBlankOrLineBreak);
    if (processor.empty() || processor.find(U"Apple") != Text::npos) {
        if (const auto overview = decoded(round.overview))
            processor = labelled(*overview, U"Chip:").value_or(processor);
    }
    std::int64_t memory = 8;
    if (const auto text = decoded(round.memory)) {
        if (const auto bytes = integer(trimmed(*text, isBlankOrLineBreak))) memory = *bytes / 1'073'741'824;
    }
    Text graphics = U"Unknown";
    if (const auto displays = decoded(round.displays)) {
        auto found = labelled(*displays, U"Chipset Model:");
        if (!found) found = labelled(*displays, U"Model:");
        graphics = found.value_or(graphics);
    }
    const std::string disk = std::to_string(storage(round.disk));
    expected.values = {"macOS", encoded(processor), encoded(graphics) + " 4GB", std::to_string(memory) + " GB DDR4",
                       disk + " GB SSD"};
    expected.body = R"({"profile_name":"My PC","os":"macOS","processor":)" + jsonString(encoded(processor)) +
                    R"(,"graphics_card":)" + jsonString(encoded(graphics)) + R"(,"ram_gb":)" + std::to_string(memory) +
                    R"(,"ram_type":"DDR4","ram_frequency":2666,"storage_gb":)" + disk +
                    R"(,"storage_type":"SSD","directx_version":"Not Applicable","gpu_memory":4})";

    const std::string address = base + round.addressTail;
    expected.endpoint = address + "/save-detected-hardware/";
    expected.log = {"📤 Sending hardware data to: " + expected.endpoint};
    const Verdict result = verdict(round, expected.log);
    std::optional<std::string> opened;
    if (result.accepted) opened = page(round, address, expected.log);
    if (result.error) expected.log.push_back("❌ Final error: " + *result.error);
    if (opened) {
        expected.pages = {*opened};
        expected.log.push_back("✅ Opened URL: " + *opened);
        expected.log.push_back("📋 Hardware ID: " + hardwareId(round).value_or("none"));
    }
    expected.ends = result.accepted;
    expected.banner = result.accepted ? "Hardware data sent successfully! Opening website..."
                                      : "Error: Failed to send hardware data. Check the console for details.";
    if (!result.accepted) {
        expected.log.emplace_back("❌ Failed to send hardware data. Check the console output above for details.");
    }
    return expected;
}

}  // namespace randomCases
