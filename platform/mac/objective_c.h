// Messages to Objective-C objects from plain C++.
#pragma once

#include <objc/message.h>
#include <objc/runtime.h>

namespace platform::objectiveC {

// objc_msgSend must be called with the types of the method that it stands for.
template <typename Result = void, typename... Arguments>
Result send(id receiver, const char* selector, Arguments... arguments) {
    using Method = Result (*)(id, SEL, Arguments...);
    return reinterpret_cast<Method>(&objc_msgSend)(receiver, sel_registerName(selector), arguments...);
}

[[nodiscard]] inline id classNamed(const char* name) { return reinterpret_cast<id>(objc_getClass(name)); }

// False for nil.
[[nodiscard]] inline bool responds(id receiver, const char* selector) {
    return send<BOOL>(receiver, "respondsToSelector:", sel_registerName(selector)) != NO;
}

}  // namespace platform::objectiveC
