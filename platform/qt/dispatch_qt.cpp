// The main queue on Qt's event loop; the other one on threads.
#include "platform/dispatch.h"

#include <QCoreApplication>
#include <QTimer>
#include <system_error>
#include <thread>
#include <utility>

namespace platform {

namespace {

// How soon a piece of work is offered again when the system has no thread to give.
constexpr std::chrono::milliseconds secondTry{100};

}  // namespace

// The application object is the receiver of everything, so all of it arrives in the order in which it was posted.
void mainQueue::async(Work work) {
    QMetaObject::invokeMethod(QCoreApplication::instance(), std::move(work), Qt::QueuedConnection);
}

void mainQueue::asyncAfter(std::chrono::milliseconds delay, Work work) {
    // A timer belongs to the thread that starts it, and only the main one is sure to run an event loop. The coarse kind
    // would be up to a twentieth early.
    async([delay, work = std::move(work)] {
        QTimer::singleShot(delay, Qt::PreciseTimer, QCoreApplication::instance(), work);
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
