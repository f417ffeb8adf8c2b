// The program under test as assistive technology sees and operates it.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tests/end_to_end/rig/patience.h"

struct _AtspiAccessible;

namespace end_to_end {

// One element of a program's window. Each question is answered by the program itself at that moment, and waits for it
// while it is busy. An element that is gone has no name and no state and can't be operated.
class Element {
  public:
    explicit Element(std::shared_ptr<_AtspiAccessible> accessible) : accessible_(std::move(accessible)) {}

    bool isButton() const;
    bool isLabel() const;
    bool isField() const;
    std::string role() const;  // for messages: the library's word, another one in other versions
    std::string name() const;
    std::string text() const;  // of a field, UTF-8; empty for what has no text to edit or select
    bool enabled() const;
    bool focused() const;
    bool showing() const;
    std::vector<Element> children() const;

    // Presses a button. True when the program took the order; what the button does comes later.
    bool press() const;

    // Replaces the text of a field.
    bool setText(const std::string& text) const;

    // The element and all below it, one a line, indented: role, name, text and states.
    std::string tree() const;

  private:
    std::shared_ptr<_AtspiAccessible> accessible_;
};

// The elements of one running program. Only what is showing is found. For the main thread alone, in a DesktopSession.
class AccessibleProgram {
  public:
    explicit AccessibleProgram(pid_t pid) : pid_(pid) {}

    // The first in the order of the tree, absent while there is none such.
    std::optional<Element> button(std::string_view name) const;
    std::optional<Element> label(std::string_view name) const;
    std::optional<Element> field() const;    // the first text field, whatever its name
    std::optional<Element> focused() const;  // what the keyboard goes to

    std::vector<Element> labels() const;  // all of them, in the order of the tree

    // For messages of failed tests.
    std::string tree() const;

  private:
    std::optional<Element> application() const;
    std::optional<Element> first(const std::function<bool(const Element&)>& matches) const;

    pid_t pid_;
};

// Waits until `condition` holds; false when it does not within the limit. A program that is busy holds up the condition
// itself, up to a minute, and that is not the condition's failure: it is asked once more after the limit.
bool waitFor(const std::function<bool()>& condition, std::chrono::milliseconds limit = patience);

}  // namespace end_to_end
