// The window, described as plain data: what it shows, from the outside in.
//
// A view is a value. It is built anew from the state at each change, and the back end that shows it brings the window
// up to date with the newest value: texts, colours, actions, whether a button is disabled and optional children change
// in place, so that focus, caret and half-typed text stay. An element of another kind, with other modifiers, another
// number of children or another spacing, alignment or width replaces the one in its slot, whose focus and caret are
// lost. When an action or a field's change returns, the window is up to date before any more input comes. All lengths
// are in points: one logical pixel each, whatever the screen's scale. Main thread only, but for Cell::get.
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

// Named colours of the platform, each with a light and a dark face; primary and secondary are those of text.
enum class Color { primary, secondary, blue, green, red, gray, white };

enum class SymbolName { checkmarkCircleFill, xmarkCircleFill, infoCircleFill };

class View;

struct Text {
    std::string text;  // Shown as it stands: no markup, no shortcut marks. Wraps where its space ends.
    TextStyle style = TextStyle::body;
    std::optional<Weight> weight = {};  // The style's own when absent.
    std::optional<Color> color = {};    // The surrounding foreground when absent.
};

struct TextField {
    std::string text;
    std::string placeholder;
    std::string accessibleName;  // What a screen reader calls the field.
    // Called with the whole text at every change that a person makes.
    std::function<void(const std::string&)> onChange;
};

struct ProgressIndicator {
    double scale = 1;  // Drawn at this share of its natural size; the space it takes stays natural.
};

struct Symbol {
    SymbolName name;
    Color tint;
};

struct Spacer {};

// The slot of an optional child that is not there now: it takes no space, and no spacing either.
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

// Scrolls vertically when its content is higher than its space. As high as its content, at most `maximumHeight`, and
// the one element that gives way when the window is too low for everything.
struct ScrollArea {
    int maximumHeight;
    std::string accessibleName;  // What a screen reader calls the area.
    std::vector<View> content;   // Exactly one.
};

// Modifiers wrap what stands before them: a background after a padding fills the padding too.
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
};
struct CornerRadius {
    int radius;
};
struct Foreground {  // The colour of every text and indicator inside that names none.
    Color color;
};
struct Disabled {  // On a button; other elements are never disabled.
    bool disabled;
};
struct Spoken {      // For a screen reader all inside is one, called by all its words; the parts can still be read by
                     // themselves.
    bool announced;  // Said at once, too, whenever the words appear or change.
};
struct OnAppear {  // On the outermost view: called each time the window has come on screen, its first frame painted.
    std::function<void()> action;
};

using Modifier =
    std::variant<Padding, Stretch, Frame, Background, CornerRadius, Foreground, Disabled, Spoken, OnAppear>;

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
    [[nodiscard]] View background(Color color, double opacity = 1) && {
        return std::move(*this).with(Background{color, opacity});
    }
    [[nodiscard]] View cornerRadius(int radius) && { return std::move(*this).with(CornerRadius{radius}); }
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

// The child while `present`, and its empty slot otherwise, so that the children after it stay who they are.
template <typename MakeView>
[[nodiscard]] View optionally(bool present, MakeView makeView) {
    return present ? makeView() : View(Nothing{});
}

// Tells the window that shows a view that the view's state has changed. Copies tell the same window.
class ChangeNotifier {
  public:
    void observe(std::function<void()> observer) const { *observer_ = std::move(observer); }

    void notify() const {
        if (*observer_) (*observer_)();
    }

  private:
    std::shared_ptr<std::function<void()>> observer_ = std::make_shared<std::function<void()>>();
};

// One piece of a view's state. Copies share the piece, so a view that holds cells is a cheap handle on its state.
// Only the main thread sets; get is safe from any thread and gives a whole value, old or new.
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

// A window of fixed content size without title bar, moved by its background. How it is closed, whether the application
// ends with it, and how it is opened again, are the desktop's conventions.
struct WindowDescription {
    struct Content {
        std::function<View()> body;  // The newest view. Called on the main thread at each change.
        ChangeNotifier changes;      // Says when there is a newer one.
    };

    std::string name;  // What task bars and screen readers call the window; shown nowhere in it.
    int width;
    int height;
    std::function<Content()> content;  // For a window that opens: a main view of its own, in its initial state.
};

}  // namespace platform
