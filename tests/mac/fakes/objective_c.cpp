#include "tests/mac/fakes/objective_c.h"

#include <objc/runtime.h>

#include <map>
#include <string_view>

// Objects and classes are represented by their names.
struct objc_object {
    std::string name;
};
struct objc_selector {
    std::string name;
};

namespace recordingFakes {

namespace {

objc_object window{"NSWindow"};
objc_object application{"NSApp"};
objc_object applicationClass{"NSApplication"};
objc_object transactionClass{"CATransaction"};

// A view is the pointer that the toolkit gives; it is never dereferenced.
std::string nameOf(const objc_object* receiver) {
    for (const objc_object* known : {&window, &application, &applicationClass, &transactionClass}) {
        if (receiver == known) return known->name;
    }
    return receiver == nullptr ? "nil" : "view";
}

bool takesAnArgument(std::string_view selector) { return !selector.empty() && selector.back() == ':'; }

}  // namespace

ObjectiveC& objectiveC() {
    static ObjectiveC instance;
    return instance;
}

}  // namespace recordingFakes

using namespace recordingFakes;

extern "C" {

Class objc_getClass(const char* name) {
    for (objc_object* known : {&applicationClass, &transactionClass}) {
        if (name == known->name) return reinterpret_cast<Class>(known);
    }
    return nullptr;
}

SEL sel_registerName(const char* name) {
    static std::map<std::string, objc_selector> selectors;  // One selector for each name.
    return &selectors.try_emplace(name, objc_selector{name}).first->second;
}

// The framework declares it without arguments; callers pass two, and a third if the selector ends with a colon.
void* objc_msgSend(objc_object* receiver, objc_selector* selector, long argument) {
    const std::string& name = selector->name;
    if (name == "respondsToSelector:") {
        const auto* asked = reinterpret_cast<const objc_selector*>(argument);
        return reinterpret_cast<void*>(static_cast<long>(objectiveC().unknownSelectors.count(asked->name) == 0));
    }
    std::string message = nameOf(receiver) + " " + name;
    if (takesAnArgument(name))
        message += " " + std::to_string(name == "setTitlebarAppearsTransparent:" ? argument & 0xFF : argument);
    objectiveC().messages.push_back(message);
    if (name == "window") return &window;
    if (name == "sharedApplication") return &application;
    return nullptr;
}
}
