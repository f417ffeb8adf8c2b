// Records what a screen reader announces: announcements, and notifications that appear on screen.
#pragma once

#include <sys/types.h>

#include <memory>
#include <string>
#include <vector>

struct _AtspiEventListener;

namespace end_to_end {

// Listens from construction to destruction. Events arrive during waitFor().
class Announcements {
  public:
    explicit Announcements(pid_t program);
    ~Announcements();
    Announcements(const Announcements&) = delete;
    Announcements& operator=(const Announcements&) = delete;

    // The text of each notification, in order.
    const std::vector<std::string>& words() const { return words_; }

  private:
    std::vector<std::string> words_;
    std::shared_ptr<_AtspiEventListener> listener_;
};

}  // namespace end_to_end
