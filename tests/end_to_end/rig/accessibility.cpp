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

std::string nameOf(AtspiAccessible* accessible) { return taken(atspi_accessible_get_name(accessible, nullptr)); }

std::string roleOf(AtspiAccessible* accessible) { return taken(atspi_accessible_get_role_name(accessible, nullptr)); }

std::string textOf(AtspiAccessible* accessible) {
    const auto text = owned(atspi_accessible_get_text_iface(accessible));
    if (!text) return {};
    const gint length = atspi_text_get_character_count(text.get(), nullptr);
    return taken(atspi_text_get_text(text.get(), 0, length, nullptr));
}

using Accessible = std::shared_ptr<AtspiAccessible>;

std::vector<Accessible> childrenOf(AtspiAccessible* accessible) {
    std::vector<Accessible> children;
    const gint count = atspi_accessible_get_child_count(accessible, nullptr);
    for (gint i = 0; i < count; ++i) {
        if (auto child = owned(atspi_accessible_get_child_at_index(accessible, i, nullptr))) children.push_back(child);
    }
    return children;
}

// Null if the program offers no elements.
Accessible applicationOf(pid_t program) {
    const Accessible root = desktop();
    if (!root) return nullptr;
    for (const Accessible& candidate : childrenOf(root.get())) {
        if (atspi_accessible_get_process_id(candidate.get(), nullptr) == static_cast<guint>(program)) return candidate;
    }
    return nullptr;
}

// Stops at the first element for which `visit` returns true.
bool visitTree(const Accessible& accessible, const std::function<bool(const Accessible&)>& visit) {
    if (visit(accessible)) return true;
    for (const Accessible& child : childrenOf(accessible.get())) {
        if (visitTree(child, visit)) return true;
    }
    return false;
}

std::string treeOf(AtspiAccessible* accessible, const std::string& indent) {
    std::string lines = indent + roleOf(accessible) + " \"" + nameOf(accessible) + "\"";
    if (const std::string text = textOf(accessible); !text.empty()) lines += " text \"" + text + "\"";
    for (const auto& [state, name] : statesInTree) {
        if (has(accessible, state)) lines += std::string(" ") + name;
    }
    lines += "\n";
    for (const Accessible& child : childrenOf(accessible)) lines += treeOf(child.get(), indent + "  ");
    return lines;
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

std::string Element::role() const { return roleOf(accessible_.get()); }

std::string Element::name() const { return nameOf(accessible_.get()); }

bool Element::enabled() const { return has(accessible_.get(), ATSPI_STATE_ENABLED); }

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

std::optional<Element> AccessibleProgram::button(std::string_view name) const {
    return first([&](AtspiAccessible* each) { return is(each, ATSPI_ROLE_PUSH_BUTTON) && nameOf(each) == name; });
}

std::optional<Element> AccessibleProgram::label(std::string_view name) const {
    return first([&](AtspiAccessible* each) { return is(each, ATSPI_ROLE_LABEL) && nameOf(each) == name; });
}

std::optional<Element> AccessibleProgram::field() const {
    return first([](AtspiAccessible* each) { return is(each, ATSPI_ROLE_TEXT); });
}

std::optional<Element> AccessibleProgram::focused() const {
    return first([](AtspiAccessible* each) { return has(each, ATSPI_STATE_FOCUSED); });
}

std::vector<Element> AccessibleProgram::labels() const {
    std::vector<Element> found;
    const Accessible root = applicationOf(pid_);
    if (!root) return found;
    visitTree(root, [&](const Accessible& each) {
        if (is(each.get(), ATSPI_ROLE_LABEL) && has(each.get(), ATSPI_STATE_SHOWING)) found.emplace_back(each);
        return false;
    });
    return found;
}

std::string AccessibleProgram::tree() const {
    const Accessible root = applicationOf(pid_);
    return root ? treeOf(root.get(), "") : "the program offers no elements\n";
}

std::optional<Element> AccessibleProgram::first(const std::function<bool(AtspiAccessible*)>& matches) const {
    const Accessible root = applicationOf(pid_);
    if (!root) return std::nullopt;
    std::optional<Element> found;
    visitTree(root, [&](const Accessible& each) {
        if (!matches(each.get()) || !has(each.get(), ATSPI_STATE_SHOWING)) return false;
        found.emplace(each);
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
