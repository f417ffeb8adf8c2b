#include "tests/mac/fakes/objective_c.h"

#include <objc/runtime.h>

#include <map>
#include <string_view>

// Objects and classes are their names.
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

// A view is whatever the toolkit hands out as one, and is not looked into.
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
    static std::map<std::string, objc_selector> selectors;  // The same one for the same name.
    return &selectors.try_emplace(name, objc_selector{name}).first->second;
}

// Declared without arguments and called with a method's: the first two always, a third after a colon.
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
