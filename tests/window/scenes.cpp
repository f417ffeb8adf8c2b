#include "tests/window/scenes.h"

#include <functional>
#include <utility>

namespace window_test {

using fakes::machine;

const std::vector<std::string>& ScenicWindow::scenes() {
    static const std::vector<std::string> all = {"launch", "detecting", "detected",      "detecting_again", "sending",
                                                 "sent",   "failed",    "address_empty", "long_values"};
    return all;
}

void ScenicWindow::bringAbout(const std::string& scene) {
    machine().commands["/usr/sbin/sysctl -n machdep.cpu.brand_string"] = "Apple M1 Pro\n";
    machine().commands["/usr/sbin/sysctl -n hw.memsize"] = "17179869184\n";
    machine().commands["/usr/sbin/system_profiler SPHardwareDataType"] = "      Chip: Apple M1 Pro\n";
    machine().commands["/usr/sbin/system_profiler SPDisplaysDataType"] = "      Chipset Model: Apple M1 Pro\n";
    machine().commands["/bin/df -h /"] = "Filesystem Size\n/dev/disk3s1s1 494G\n";
    if (scene == "sent") {
        machine().website = [](const auto&) { return fakes::answered(200, R"({"success": true})"); };
    }
    if (scene == "long_values") {
        std::string names;
        for (int card = 1; card <= 12; ++card) names += "Graphics card number " + std::to_string(card) + ", ";
        machine().commands["/usr/sbin/system_profiler SPDisplaysDataType"] = "Chipset Model: " + names + "\n";
    }
    if (scene == "launch") return;

    button("Detect Hardware")->click();
    settle();
    if (scene == "detecting") return;

    finishWork();
    if (scene == "detecting_again") {
        button("Detect Hardware")->click();
    } else if (scene == "address_empty") {
        field()->clear();
    } else if (scene == "sending" || scene == "sent" || scene == "failed") {
        button("Send to Website")->click();
        settle();
        if (scene != "sending") finishWork();
    }
    settle();
}

}  // namespace window_test
