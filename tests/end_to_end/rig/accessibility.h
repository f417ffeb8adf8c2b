// Reads and operates the program under test through the accessibility bus.
#pragma once

#include <sys/types.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

struct _AtspiAccessible;

namespace end_to_end {

// One element of a program's window. Each call asks the program, and blocks while the program is busy. An element that
// no longer exists has no name and no state, and can't be operated.
class Element {
  public:
    explicit Element(std::shared_ptr<_AtspiAccessible> accessible) : accessible_(std::move(accessible)) {}

    std::string role() const;  // the library's versions use different words
    std::string name() const;
    bool enabled() const;

    // Presses a button. True if the program accepted the press; its effect comes later.
    bool press() const;

    // Replaces the text of a field.
    bool setText(const std::string& text) const;

  private:
    std::shared_ptr<_AtspiAccessible> accessible_;
};

// The elements of one running program. Finds only elements that are showing. For the main thread, in a DesktopSession.
class AccessibleProgram {
  public:
    explicit AccessibleProgram(pid_t pid) : pid_(pid) {}

    // The first match in tree order; absent if there is none.
    std::optional<Element> button(std::string_view name) const;
    std::optional<Element> label(std::string_view name) const;
    std::optional<Element> field() const;  // the first text field, whatever its name
    std::optional<Element> focused() const;

    std::vector<Element> labels() const;  // all, in tree order

    // For messages of failed tests: the elements, one per line, indented, with role, name, text and states.
    std::string tree() const;

  private:
    std::optional<Element> first(const std::function<bool(_AtspiAccessible*)>& matches) const;

    pid_t pid_;
};

// Waits until `condition` is true; returns false after the limit. A busy program may block the condition for up to a
// minute, so the condition is checked once more after the limit.
bool waitFor(const std::function<bool()>& condition);

// Both wait for the element; false after the limit.
[[nodiscard]] bool press(const AccessibleProgram& window, const std::string& name);
[[nodiscard]] bool shows(const AccessibleProgram& window, const std::string& text);

}  // namespace end_to_end
