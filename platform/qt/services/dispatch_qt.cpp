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

// How soon a piece of work is offered again when the system has no thread to give.
constexpr std::chrono::milliseconds secondTry{100};

// Lives on the main thread, whose event loop has it run one piece for each event it was sent.
//
// The toolkit could keep the work itself, but hands it over by means that a thread sanitizer doesn't see, and this is
// the one place where threads meet.
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
    // The deadline counts from the call, however long the main thread is busy before it can start the timer. A timer
    // belongs to the thread that starts it, and only the main one is sure to run an event loop. The coarse kind would
    // be up to a twentieth early.
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
