#include "website_stand_in/page.h"

#include <cstddef>
#include <string_view>

namespace websiteStandIn {

namespace {

// With an empty icon browsers don't request one.
constexpr std::string_view head = R"(<meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1">
<link rel="icon" href="data:,">
<style>
:root {
    color-scheme: light dark;
    --ground: #f2f2f7; --card: #ffffff; --text: #1c1c1e; --faint: #636366; --line: #e5e5ea; --link: #0066cc;
}
@media (prefers-color-scheme: dark) {
    :root {
        --ground: #000000; --card: #1c1c1e; --text: #f2f2f7; --faint: #aeaeb2; --line: #38383a; --link: #4da3ff;
    }
}
body {
    margin: 0 auto; max-width: 40rem; padding: 2rem 1rem;
    background: var(--ground); color: var(--text); font: 1rem/1.5 system-ui, sans-serif; overflow-wrap: anywhere;
}
h1 { font-size: 1.6rem; margin: 0 0 1rem; }
h2 { font-size: 1.1rem; margin: 2rem 0 0.5rem; }
table, .card { width: 100%; box-sizing: border-box; background: var(--card); border-radius: 0.75rem; }
table { border-collapse: collapse; }
.card { padding: 0.75rem 1rem; margin: 0; }
th, td { padding: 0.75rem 1rem; text-align: left; vertical-align: top; font-weight: normal; }
th { width: 40%; color: var(--faint); }
tr + tr { border-top: 1px solid var(--line); }
a { color: var(--link); }
footer { margin-top: 2rem; color: var(--faint); font-size: 0.875rem; }
</style>
)";

std::string escaped(std::string_view text) {
    std::string html;
    for (const char c : text) {
        switch (c) {
            case '&': html += "&amp;"; break;
            case '<': html += "&lt;"; break;
            case '>': html += "&gt;"; break;
            case '"': html += "&quot;"; break;
            case '\'': html += "&#39;"; break;
            default: html += c;
        }
    }
    return html;
}

// `title` is text, `content` is HTML.
std::string document(std::string_view title, const std::string& content) {
    return std::string("<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n")
        .append(head)
        .append("<title>")
        .append(escaped(title))
        .append("</title>\n</head>\n<body>\n<main>\n<h1>")
        .append(escaped(title))
        .append("</h1>\n")
        .append(content)
        .append("</main>\n<footer>A stand-in for the Velmora website, on this computer alone. ")
        .append("It forgets everything when it ends.</footer>\n</body>\n</html>\n");
}

// `heading` and `value` are HTML.
std::string row(std::string_view heading, std::string_view value) {
    return std::string("<tr><th scope=\"row\">")
        .append(heading)
        .append("</th><td>")
        .append(value)
        .append("</td></tr>\n");
}

std::string table(const std::string& rows) { return "<table>\n" + rows + "</table>\n"; }

std::string card(std::string_view text) {
    return std::string("<p class=\"card\">").append(escaped(text)).append("</p>\n");
}

std::string quantity(std::int64_t number, std::string_view unit) {
    return std::to_string(number).append(" ").append(unit);
}

std::string counted(std::size_t count, std::string_view noun) {
    return std::to_string(count).append(" ").append(noun).append(count == 1 ? "" : "s");
}

std::string linkTo(std::size_t hardwareId, const Machine& machine) {
    const std::string number = std::to_string(hardwareId);
    return "<a href=\"/detected-hardware/?hardware_id=" + number + "\">" + number + ". " +
           escaped(machine.profileName) + "</a>";
}

std::string machineList(const std::vector<Machine>& machines) {
    if (machines.empty()) return card("None has been sent yet.");
    std::string rows;
    for (std::size_t id = 1; id <= machines.size(); ++id) {
        const Machine& machine = machines[id - 1];
        rows += row(linkTo(id, machine), escaped(machine.processor));
    }
    return table(rows);
}

std::string reportCounts(const Records& records) {
    std::size_t usages = 0;
    for (const auto& [device, days] : records.daysOfUse) usages += days.size();
    return card(counted(records.installs.size(), "install") + " and " + counted(usages, "usage") + " reported.");
}

std::string usageList(const std::map<std::string, std::vector<std::string>>& daysOfUse) {
    std::string rows;
    for (const auto& [device, days] : daysOfUse) {
        std::string list;
        for (const std::string& day : days) list += (list.empty() ? "" : ", ") + escaped(day);
        rows += row(escaped(device), list);
    }
    return rows.empty() ? rows : "<h2>Days of use by device</h2>\n" + table(rows);
}

}  // namespace

std::string startPage(const Records& records) {
    return document("Velmora", "<h2>Machines</h2>\n" + machineList(records.machines) + "<h2>Reports</h2>\n" +
                                   reportCounts(records) + usageList(records.daysOfUse));
}

std::string machinePage(const Machine& machine) {
    const std::string facts =
        row("Operating system", escaped(machine.os)) + row("Processor", escaped(machine.processor)) +
        row("Graphics card", escaped(machine.graphicsCard)) +
        row("Graphics memory", quantity(machine.gpuMemory, "GB")) + row("Memory", quantity(machine.ramGb, "GB")) +
        row("Memory type", escaped(machine.ramType)) + row("Memory frequency", quantity(machine.ramFrequency, "MHz")) +
        row("Storage", quantity(machine.storageGb, "GB")) + row("Storage type", escaped(machine.storageType)) +
        row("DirectX version", escaped(machine.directxVersion));
    return document(machine.profileName, table(facts) + "<p><a href=\"/\">All machines</a></p>\n");
}

std::string unknownMachinePage() {
    return document("Unknown machine",
                    card("No machine is stored under this number.") + "<p><a href=\"/\">All machines</a></p>\n");
}

}  // namespace websiteStandIn
