// The main queue on Qt's event loop; the other one on threads.
#include "platform/dispatch.h"

#include <QCoreApplication>
#include <QEvent>
#include <QTimer>
#include <algorithm>
#include <chrono>
#include <deque>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

namespace platform {

namespace {

// When to try again after the system has refused a thread.
constexpr std::chrono::milliseconds secondTry{100};

// Lives on the main thread and runs one piece of work for each event.
//
// The toolkit's own queued calls would be shorter, but a thread sanitizer doesn't see how they synchronise threads.
class MainQueue : public QObject {
  public:
    MainQueue() { moveToThread(QCoreApplication::instance()->thread()); }

    void post(Work work) {
        {
            const std::lock_guard lock(mutex_);
            waiting_.push_back(std::move(work));
        }
        QCoreApplication::postEvent(this, new QEvent(QEvent::User));
    }

    bool event(QEvent* event) override {
        if (event->type() != QEvent::User) return QObject::event(event);
        runNext();
        return true;
    }

  private:
    void runNext() {
        Work next;
        {
            const std::lock_guard lock(mutex_);
            next = std::move(waiting_.front());
            waiting_.pop_front();
        }
        next();
    }

    std::mutex mutex_;
    std::deque<Work> waiting_;
};

}  // namespace

void mainQueue::async(Work work) {
    static auto& queue = *new MainQueue;  // Never destroyed: threads may post until the process has ended.
    queue.post(std::move(work));
}

void mainQueue::asyncAfter(std::chrono::milliseconds delay, Work work) {
    using std::chrono::steady_clock;
    // The delay counts from the call, also when the main thread is too busy to start the timer at once. The timer must
    // start there, because only that thread is sure to run an event loop. A coarse timer may be early.
    async([deadline = steady_clock::now() + delay, work = std::move(work)] {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - steady_clock::now());
        QTimer::singleShot(std::max(left, std::chrono::milliseconds(0)), Qt::PreciseTimer, QCoreApplication::instance(),
                           work);
    });
}

void userInitiatedQueue::async(Work work) {
    try {
        std::thread(work).detach();
    } catch (const std::system_error&) {
        mainQueue::asyncAfter(secondTry, [work = std::move(work)]() mutable { async(std::move(work)); });
    }
}

}  // namespace platform
