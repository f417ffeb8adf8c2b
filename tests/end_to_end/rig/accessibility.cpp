#include "tests/end_to_end/rig/accessibility.h"

#include <atspi/atspi.h>

#include <array>
#include <utility>

#include "tests/end_to_end/rig/patience.h"

namespace end_to_end {

namespace {

// The program may block its main thread for some seconds. After a call that timed out, the library fails all later
// calls at once, so the limit is longer than any expected block.
constexpr std::chrono::milliseconds callLimit = std::chrono::minutes{1};

// The pause between two checks, since some changes send no event.
constexpr std::chrono::milliseconds pause{20};

constexpr std::array<std::pair<AtspiStateType, const char*>, 8> statesInTree{{
    {ATSPI_STATE_ENABLED, "enabled"},
    {ATSPI_STATE_FOCUSABLE, "focusable"},
    {ATSPI_STATE_FOCUSED, "focused"},
    {ATSPI_STATE_SHOWING, "showing"},
    {ATSPI_STATE_EDITABLE, "editable"},
    {ATSPI_STATE_BUSY, "busy"},
    {ATSPI_STATE_ACTIVE, "active"},
    {ATSPI_STATE_MULTI_LINE, "multi-line"},
}};

template <typename Object>
std::shared_ptr<Object> owned(Object* object) {
    return {object, [](Object* held) {
                if (held != nullptr) g_object_unref(held);
            }};
}

std::string taken(gchar* text) {
    const std::unique_ptr<gchar, decltype(&g_free)> owner(text, g_free);
    return text == nullptr ? std::string() : std::string(text);
}

std::shared_ptr<AtspiAccessible> desktop() {
    static const bool prepared = [] {
        atspi_init();
        atspi_set_timeout(static_cast<gint>(callLimit.count()), static_cast<gint>(callLimit.count()));
        return true;
    }();
    static_cast<void>(prepared);
    std::shared_ptr<AtspiAccessible> root = owned(atspi_get_desktop(0));
    // The cache follows events, which come late or not at all. The root's setting holds for all elements.
    if (root) atspi_accessible_set_cache_mask(root.get(), ATSPI_CACHE_NONE);
    return root;
}

bool is(AtspiAccessible* accessible, AtspiRole role) { return atspi_accessible_get_role(accessible, nullptr) == role; }

bool has(AtspiAccessible* accessible, AtspiStateType state) {
    const std::shared_ptr<AtspiStateSet> states = owned(atspi_accessible_get_state_set(accessible));
    return states && atspi_state_set_contains(states.get(), state) != FALSE;
}

std::string lineFor(const Element& element, AtspiAccessible* accessible) {
    std::string line = element.role() + " \"" + element.name() + "\"";
    if (const std::string text = element.text(); !text.empty()) line += " text \"" + text + "\"";
    for (const auto& [state, name] : statesInTree) {
        if (has(accessible, state)) line += std::string(" ") + name;
    }
    return line;
}

// Stops at the first element for which `visit` returns true.
bool visitTree(const Element& element, const std::function<bool(const Element&)>& visit) {
    if (visit(element)) return true;
    for (const Element& child : element.children()) {
        if (visitTree(child, visit)) return true;
    }
    return false;
}

// Handles the library's events during the pause.
void handleEvents() {
    bool over = false;
    const auto end = [](gpointer flag) -> gboolean {
        *static_cast<bool*>(flag) = true;
        return G_SOURCE_REMOVE;
    };
    g_timeout_add(static_cast<guint>(pause.count()), end, &over);
    while (!over) g_main_context_iteration(nullptr, TRUE);
}

}  // namespace

bool Element::isButton() const { return is(accessible_.get(), ATSPI_ROLE_PUSH_BUTTON); }

bool Element::isLabel() const { return is(accessible_.get(), ATSPI_ROLE_LABEL); }

bool Element::isField() const { return is(accessible_.get(), ATSPI_ROLE_TEXT); }

std::string Element::role() const { return taken(atspi_accessible_get_role_name(accessible_.get(), nullptr)); }

std::string Element::name() const { return taken(atspi_accessible_get_name(accessible_.get(), nullptr)); }

std::string Element::text() const {
    const auto text = owned(atspi_accessible_get_text_iface(accessible_.get()));
    if (!text) return {};
    const gint length = atspi_text_get_character_count(text.get(), nullptr);
    return taken(atspi_text_get_text(text.get(), 0, length, nullptr));
}

bool Element::enabled() const { return has(accessible_.get(), ATSPI_STATE_ENABLED); }

bool Element::focused() const { return has(accessible_.get(), ATSPI_STATE_FOCUSED); }

bool Element::showing() const { return has(accessible_.get(), ATSPI_STATE_SHOWING); }

std::vector<Element> Element::children() const {
    std::vector<Element> children;
    const gint count = atspi_accessible_get_child_count(accessible_.get(), nullptr);
    for (gint i = 0; i < count; ++i) {
        auto child = owned(atspi_accessible_get_child_at_index(accessible_.get(), i, nullptr));
        if (child) children.emplace_back(std::move(child));
    }
    return children;
}

bool Element::press() const {
    const auto action = owned(atspi_accessible_get_action_iface(accessible_.get()));
    if (!action) return false;
    const gint count = atspi_action_get_n_actions(action.get(), nullptr);
    for (gint i = 0; i < count; ++i) {
        if (taken(atspi_action_get_action_name(action.get(), i, nullptr)) != "Press") continue;
        return atspi_action_do_action(action.get(), i, nullptr) != FALSE;
    }
    return false;
}

bool Element::setText(const std::string& text) const {
    const auto field = owned(atspi_accessible_get_editable_text_iface(accessible_.get()));
    return field && atspi_editable_text_set_text_contents(field.get(), text.c_str(), nullptr) != FALSE;
}

std::string Element::tree() const {
    std::string lines = lineFor(*this, accessible_.get()) + "\n";
    for (const Element& child : children()) {
        std::string below = child.tree();
        for (std::size_t start = 0; start < below.size(); start = below.find('\n', start) + 1)
            below.insert(start, "  ");
        lines += below;
    }
    return lines;
}

std::optional<Element> AccessibleProgram::button(std::string_view name) const {
    return first([&](const Element& element) { return element.isButton() && element.name() == name; });
}

std::optional<Element> AccessibleProgram::label(std::string_view name) const {
    return first([&](const Element& element) { return element.isLabel() && element.name() == name; });
}

std::optional<Element> AccessibleProgram::field() const {
    return first([](const Element& element) { return element.isField(); });
}

std::optional<Element> AccessibleProgram::focused() const {
    return first([](const Element& element) { return element.focused(); });
}

std::vector<Element> AccessibleProgram::labels() const {
    std::vector<Element> found;
    first([&](const Element& element) {
        if (element.isLabel() && element.showing()) found.push_back(element);
        return false;
    });
    return found;
}

std::string AccessibleProgram::tree() const {
    const std::optional<Element> root = application();
    return root ? root->tree() : "the program offers no elements\n";
}

std::optional<Element> AccessibleProgram::application() const {
    const std::shared_ptr<AtspiAccessible> root = desktop();
    const gint count = root ? atspi_accessible_get_child_count(root.get(), nullptr) : 0;
    for (gint i = 0; i < count; ++i) {
        auto candidate = owned(atspi_accessible_get_child_at_index(root.get(), i, nullptr));
        if (!candidate) continue;
        if (atspi_accessible_get_process_id(candidate.get(), nullptr) != static_cast<guint>(pid_)) continue;
        return Element(std::move(candidate));
    }
    return std::nullopt;
}

std::optional<Element> AccessibleProgram::first(const std::function<bool(const Element&)>& matches) const {
    const std::optional<Element> root = application();
    if (!root) return std::nullopt;
    std::optional<Element> found;
    visitTree(*root, [&](const Element& element) {
        if (!matches(element) || !element.showing()) return false;
        found = element;
        return true;
    });
    return found;
}

bool waitFor(const std::function<bool()>& condition) {
    const auto deadline = std::chrono::steady_clock::now() + patience;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline) return condition();
        handleEvents();
    }
    return true;
}

bool press(const AccessibleProgram& window, const std::string& name) {
    return waitFor([&] {
        const auto button = window.button(name);
        return button && button->enabled() && button->press();
    });
}

bool shows(const AccessibleProgram& window, const std::string& text) {
    return waitFor([&] { return window.label(text).has_value(); });
}

}  // namespace end_to_end
