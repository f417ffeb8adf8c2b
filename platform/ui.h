// The window, described as plain data.
//
// A view is a value, built anew from the state at each change. The back end updates the window at once and in place, so
// that the next input acts on the new state, and focus, caret and half-typed text stay. Only an element of another
// kind, with other modifiers, another number of children or another spacing, alignment or width replaces the one in its
// slot. Actions, onChange and onAppear may change the state. Lengths are in points: logical pixels. Main thread only,
// except Cell::get.
#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace platform {

inline constexpr int standardPadding = 16;
inline constexpr int defaultSpacing = 8;

enum class Axis { vertical, horizontal };
enum class Alignment { leading, center };
enum class Edges { all, horizontal, top, trailing };

// The platform's text styles: 13 points, 11 points, 13 points semibold, and 17 points.
enum class TextStyle { body, subheadline, headline, title2 };
enum class Weight { regular, semibold, bold };

// Named colours of the platform, each in light and dark; primary and secondary are those of text.
enum class Color { primary, secondary, blue, green, red, gray, white };

enum class SymbolName { checkmarkCircleFill, xmarkCircleFill, infoCircleFill };

class View;

struct Text {
    std::string text;  // Shown unchanged, without markup. Wraps.
    TextStyle style = TextStyle::body;
    std::optional<Weight> weight = {};  // The style's own when absent.
    std::optional<Color> color = {};    // The surrounding foreground when absent.
};

struct TextField {
    std::string text;
    std::string placeholder;
    std::string accessibleName;  // What a screen reader calls the field.
    // Called with the whole text at each change that a person makes.
    std::function<void(const std::string&)> onChange;
};

struct ProgressIndicator {
    double scale;  // Of the drawing; the space that it takes stays the same.
};

struct Symbol {
    SymbolName name;
    Color tint;
};

struct Spacer {};

// The slot of an absent optional child: takes neither space nor spacing.
struct Nothing {};

struct Stack {
    Axis axis;
    Alignment alignment;  // Across the axis; a horizontal stack centres.
    int spacing;
    std::vector<View> children;
};

struct Button {
    std::function<void()> action;
    std::vector<View> label;  // Exactly one.
};

// Scrolls vertically. As high as its content, at most `maximumHeight`; the only element that shrinks when the window is
// too low for everything.
struct ScrollArea {
    int maximumHeight;
    std::string accessibleName;  // What a screen reader calls the area.
    std::vector<View> content;   // Exactly one.
};

// A modifier wraps the element and the modifiers before it: a background after a padding fills the padding too.
struct Padding {
    Edges edges;
    int length;
};
struct Stretch {  // Takes the full width offered, its content aligned in it.
    Alignment alignment;
};
struct Frame {  // A fixed width, its content aligned in it.
    int width;
    Alignment alignment;
};
struct Background {
    Color color;
    double opacity;
    int cornerRadius;

    bool operator==(const Background&) const = default;
};
struct Foreground {  // The colour of every text and indicator inside that names none.
    Color color;
};
struct Disabled {  // On a button; other elements are never disabled.
    bool disabled;
};
struct Spoken {      // One element for a screen reader, named by all its words.
    bool announced;  // Said whenever the words appear or change.
};
struct OnAppear {  // On the outermost view: called after the first frame each time the window comes on screen.
    std::function<void()> action;
};

using Modifier = std::variant<Padding, Stretch, Frame, Background, Foreground, Disabled, Spoken, OnAppear>;

class View {
  public:
    using Element =
        std::variant<Nothing, Text, TextField, ProgressIndicator, Symbol, Spacer, Stack, Button, ScrollArea>;

    View(Element element) : element_(std::move(element)) {}

    [[nodiscard]] const Element& element() const { return element_; }
    [[nodiscard]] const std::vector<Modifier>& modifiers() const { return modifiers_; }

    [[nodiscard]] View padding(Edges edges = Edges::all, int length = standardPadding) && {
        return std::move(*this).with(Padding{edges, length});
    }
    [[nodiscard]] View stretch(Alignment alignment = Alignment::center) && {
        return std::move(*this).with(Stretch{alignment});
    }
    [[nodiscard]] View frame(int width, Alignment alignment) && {
        return std::move(*this).with(Frame{width, alignment});
    }
    [[nodiscard]] View background(Color color, double opacity, int cornerRadius) && {
        return std::move(*this).with(Background{color, opacity, cornerRadius});
    }
    [[nodiscard]] View foreground(Color color) && { return std::move(*this).with(Foreground{color}); }
    [[nodiscard]] View disabled(bool isDisabled) && { return std::move(*this).with(Disabled{isDisabled}); }
    [[nodiscard]] View spokenAsOne() && { return std::move(*this).with(Spoken{false}); }
    [[nodiscard]] View announced() && { return std::move(*this).with(Spoken{true}); }
    [[nodiscard]] View onAppear(std::function<void()> action) && {
        return std::move(*this).with(OnAppear{std::move(action)});
    }

  private:
    View with(Modifier modifier) && {
        modifiers_.push_back(std::move(modifier));
        return std::move(*this);
    }

    Element element_;
    std::vector<Modifier> modifiers_;
};

[[nodiscard]] inline View vstack(Alignment alignment, int spacing, std::vector<View> children) {
    return View(Stack{Axis::vertical, alignment, spacing, std::move(children)});
}

[[nodiscard]] inline View hstack(std::vector<View> children) {
    return View(Stack{Axis::horizontal, Alignment::center, defaultSpacing, std::move(children)});
}

[[nodiscard]] inline View spacer() { return View(Spacer{}); }

// The child if `present`, otherwise an empty slot, so that the children after it keep their slots.
template <typename MakeView>
[[nodiscard]] View optionally(bool present, MakeView makeView) {
    return present ? makeView() : View(Nothing{});
}

// Tells the window that its view's state has changed. Copies tell the same window.
class ChangeNotifier {
  public:
    void observe(std::function<void()> observer) const { *observer_ = std::move(observer); }

    void notify() const {
        if (*observer_) (*observer_)();
    }

  private:
    std::shared_ptr<std::function<void()>> observer_ = std::make_shared<std::function<void()>>();
};

// One piece of a view's state, shared by all copies. Only the main thread sets it; get is safe from any thread.
template <typename Value>
class Cell {
  public:
    Cell(ChangeNotifier changes, Value initial)
        : changes_(std::move(changes)), slot_(std::make_shared<Slot>(std::move(initial))) {}

    [[nodiscard]] Value get() const {
        const std::lock_guard lock(slot_->mutex);
        return slot_->value;
    }

    void set(Value value) const {
        {
            const std::lock_guard lock(slot_->mutex);
            slot_->value = std::move(value);
        }
        changes_.notify();
    }

  private:
    struct Slot {
        explicit Slot(Value initial) : value(std::move(initial)) {}
        std::mutex mutex;
        Value value;
    };

    ChangeNotifier changes_;
    std::shared_ptr<Slot> slot_;
};

// A window of fixed size without title bar, moved by its background. The desktop's conventions decide how it is closed
// and opened again.
struct WindowDescription {
    struct Content {
        std::function<View()> body;  // The current view. Called on the main thread at each change.
        ChangeNotifier changes;      // Notified when the view has changed.
    };

    std::string name;  // For task bars and screen readers; not shown in the window.
    int width;
    int height;
    std::function<Content()> content;  // Makes the content of a window that opens, in its initial state.
};

}  // namespace platform
