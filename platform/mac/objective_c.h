// Messages to Objective-C objects from plain C++, by the language's runtime library.
#pragma once

#include <objc/message.h>
#include <objc/runtime.h>

namespace platform::objectiveC {

// The runtime's one function stands for every method; it has to be called with the method's own types.
template <typename Result = void, typename... Arguments>
Result send(id receiver, const char* selector, Arguments... arguments) {
    using Method = Result (*)(id, SEL, Arguments...);
    return reinterpret_cast<Method>(&objc_msgSend)(receiver, sel_registerName(selector), arguments...);
}

[[nodiscard]] inline id classNamed(const char* name) { return reinterpret_cast<id>(objc_getClass(name)); }

// False for an object that is not there, as every message to it is in vain.
[[nodiscard]] inline bool responds(id receiver, const char* selector) {
    return send<BOOL>(receiver, "respondsToSelector:", sel_registerName(selector)) != NO;
}

}  // namespace platform::objectiveC
