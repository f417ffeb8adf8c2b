// A fake Objective-C runtime that answers the messages of the window and the menus, and records them.
#pragma once

#include <set>
#include <string>
#include <vector>

namespace recordingFakes {

struct ObjectiveC {
    // The messages in order: receiver, selector, argument: "NSWindow setTitleVisibility: 1".
    std::vector<std::string> messages;
    std::set<std::string> unknownSelectors;  // Selectors that an older system lacks.
};

ObjectiveC& objectiveC();

}  // namespace recordingFakes
