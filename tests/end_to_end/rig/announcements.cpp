#include "tests/end_to_end/rig/announcements.h"

#include <atspi/atspi.h>

#include <string_view>
#include <utility>

namespace end_to_end {

namespace {

constexpr const char* announcement = "object:announcement";
constexpr const char* showing = "object:state-changed:showing";

struct Listening {
    pid_t program;
    std::vector<std::string>* words;
};

void note(AtspiEvent* event, void* listening) {
    const auto& [program, words] = *static_cast<Listening*>(listening);
    if (event->source != nullptr &&
        atspi_accessible_get_process_id(event->source, nullptr) == static_cast<guint>(program)) {
        if (std::string_view(event->type).starts_with(announcement)) {
            words->emplace_back(g_value_get_string(&event->any_data));
        } else if (event->detail1 != 0 &&
                   atspi_accessible_get_role(event->source, nullptr) == ATSPI_ROLE_NOTIFICATION) {
            gchar* name = atspi_accessible_get_name(event->source, nullptr);
            words->emplace_back(name == nullptr ? "" : name);
            g_free(name);
        }
    }
    g_boxed_free(ATSPI_TYPE_EVENT, event);
}

void forget(void* listening) { delete static_cast<Listening*>(listening); }

}  // namespace

Announcements::Announcements(pid_t program) {
    atspi_init();
    listener_ = {atspi_event_listener_new(note, new Listening{program, &words_}, forget),
                 [](AtspiEventListener* held) { g_object_unref(held); }};
    for (const char* const type : {announcement, showing}) {
        atspi_event_listener_register(listener_.get(), type, nullptr);
    }
}

Announcements::~Announcements() {
    for (const char* const type : {announcement, showing}) {
        atspi_event_listener_deregister(listener_.get(), type, nullptr);
    }
}

}  // namespace end_to_end
