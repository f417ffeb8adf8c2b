// An Objective-C runtime that answers what the window and the menus ask for and records each message.
#pragma once

#include <set>
#include <string>
#include <vector>

namespace recordingFakes {

struct ObjectiveC {
    // In order, the receiver before the selector and its argument: "NSWindow setTitleVisibility: 1".
    std::vector<std::string> messages;
    std::set<std::string> unknownSelectors;  // What an older system does not respond to.
};

ObjectiveC& objectiveC();

}  // namespace recordingFakes
