#include "tests/app/random_cases/case_generator.h"

#include <array>

namespace randomCases {

std::string CaseGenerator::blanks() {
    return oneOf({"", "", " ", " ", "  ", "\t", "\u00A0", "\u2003", "\u3000", " \t "});
}

std::string CaseGenerator::lineBreak() {
    return oneOf({"\n", "\n", "\n", "\n", "\n\n", "\r\n", "\r", "\u2028", "\u2029", "\u0085"});
}

std::string CaseGenerator::words() {
    return oneOf({"Apple M1", "Apple M2 Max", "Intel(R) Core(TM) i7-9750H CPU @ 2.60GHz", "apple",
                  "AMD Radeon Pro 5500M", "Intel UHD Graphics 630", "a: b", "x:y:z", "Ünïcödé 处理器", "🍏", "<b>&amp;",
                  "\"quoted\"", "back\\slash", "Chip:", "Model: 3", ":", "%41%", "'", "a\u00A0b"});
}

std::string CaseGenerator::profile(const char* const* labels, std::size_t count) {
    std::string text;
    const std::size_t lines = below(6);
    for (std::size_t line = 0; line < lines; ++line) {
        text += std::string(below(3) * 3, ' ') + labels[below(count)];
        text += onceIn(8) ? lineBreak() : blanks();
        if (!onceIn(6)) text += words() + blanks();
        text += lineBreak();
    }
    return text;
}

std::string CaseGenerator::number() {
    return oneOf({"17179869184", "17179869183", "8589934592", "1073741823", "0", "-1", "-2147483649", "+34359738368",
                  "9223372036854775807", "9223372036854775808", "-9223372036854775808", "1e9", "0x10", "1,024", "--1",
                  "-", "", "٣", "00000000000000000000008589934592"});
}

std::string CaseGenerator::diskUsage() {
    std::string text = oneOf({"Filesystem Size Used Avail Capacity Mounted on", "", "Filesystem"});
    text += oneOf({"\n", "\n", "\n", "\n", "\r\n", "\n\n", "\u2028"});
    text += blanks() + oneOf({"/dev/disk3s1s1", "/dev/disk3s1s1", "map", ""});
    text += oneOf({" ", "   ", "\t", "\u00A0", "\u2003", "\r"});
    text += oneOf({"494G", "494", "466Gi", "1.8T", "2.0G", "G494", "4G9G4G", "-5G", "+5G", "G", "1TG",
                   "9223372036854775808G", "", "494g", "500G"});
    text += oneOf({" 9.1G 213G 5% /", "", "\r", "\n/dev/disk9 1G 1G"});
    return text + oneOf({"\n", "\n", ""});
}

// Makes some outputs invalid UTF-8 or empty.
void CaseGenerator::spoil(std::string& output) {
    if (onceIn(20)) output += "\xFF";
    if (onceIn(40)) output.clear();
    if (onceIn(40)) output = "\xC3";
}

// A JSON string of pieces of addresses.
std::string CaseGenerator::address() {
    std::string text = oneOf({"", "", "/", "http://", "https://", "HTTP://", "file:///", "javascript:", "//"});
    for (std::size_t left = below(7); left > 0; --left) {
        text += oneOf({"/", "?", "&", "=", "a", "page", "hardware_id", "%20", "b.c", R"(\")", R"(\\)", " ", "é", "#",
                       R"(\u00e9)", R"(\n)"});
    }
    return "\"" + text + "\"";
}

void CaseGenerator::answer(Case& round) {
    static constexpr std::array statuses = {200, 200, 200, 200, 201, 202, 299, 400, 404, 422, 500, 503, 599};
    round.status = statuses.at(below(statuses.size()));
    if (onceIn(6)) {
        round.isObject = false;
        round.body = oneOf({"", "null", "[]", "[{\"success\": true}]", "\"success\"", "true", "{", "{\"success\": true",
                            "<html>\n<body>success</body>\n</html>\n", "\xFF\xFE\xFD", "{'success': true}",
                            "{\"success\": tru}", "42", "{\"success\": \"\xFF\"}"});
        return;
    }
    if (!onceIn(8)) {
        round.members["success"] =
            onceIn(2) ? "true"
                      : oneOf({"false", "false", "false", "null", R"("true")", R"("yes")", "[]", "{}", R"("")"});
    }
    if (onceIn(2)) {
        round.members["error"] = oneOf({R"("disk full")", R"("")", R"("line\nbreak")", "null", "7", R"({"code": 1})",
                                        R"("\u00e9 \ud83d\ude00")", R"("quote \" and \\")", "[]", "false"});
    }
    if (!onceIn(3)) {
        round.members["hardware_id"] = oneOf({"42", "0", "-7", R"("abc")", R"("a b&c=d")", R"("")", "null", R"("42")",
                                              "true", "[]", "9223372036854775807", R"("h\u00e9")", "{}"});
    }
    if (!onceIn(3)) {
        round.members["redirect_url"] =
            onceIn(2)
                ? address()
                : oneOf({R"("/results")", R"("results/")", R"("/r?x=1")", R"("/r?hardware_id=9")", R"("/hardware_id/")",
                         R"("http://127.0.0.1:9/absolute")", R"("https://e.example/a?b=c#d")", R"("HTTP://e.example/")",
                         R"("")", "null", "7", R"("//e.example/x")", R"("/a#part")", R"("ftp://e.example/")",
                         "\"javascript:alert(1)\""});
    }
    if (onceIn(4)) round.members["extra"] = R"({"deep": [1, 2, {"x": null}]})";
}

Case CaseGenerator::next() {
    static constexpr const char* overviewLabels[] = {
        "Chip:", "Chip:", "Processor Name:", "Model Name:", "Chip", "chip:", "Chip :"};
    static constexpr const char* displayLabels[] = {
        "Chipset Model:", "Chipset Model:", "Model:", "Type:", "VRAM (Total):", "chipset model:", "Display Model:"};
    Case round;
    round.brand = blanks() + (onceIn(5) ? "" : words()) + blanks() + (onceIn(6) ? "" : lineBreak());
    round.overview = profile(overviewLabels, std::size(overviewLabels));
    round.memory = blanks() + number() + blanks() + lineBreak();
    round.displays = profile(displayLabels, std::size(displayLabels));
    round.disk = diskUsage();
    for (std::string* output : {&round.brand, &round.overview, &round.memory, &round.displays, &round.disk})
        spoil(*output);
    round.addressTail = oneOf({"", "", "", "/", "//", "/sub", "/sub/", "/a%20b", "?x=1", "/p?x=1&y=2", "/p/?q"});
    answer(round);
    return round;
}

}  // namespace randomCases
