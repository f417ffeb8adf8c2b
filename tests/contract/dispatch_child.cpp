// An application that ends while its queues are full: work that blocks for ever, and work that is not due for an hour.
#include "platform/dispatch.h"

#include <QCoreApplication>
#include <cstdio>
#include <future>

using namespace platform;

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    mainQueue::asyncAfter(std::chrono::hours(1), [] { std::puts("an hour later"); });
    userInitiatedQueue::async([] {
        mainQueue::async([] { QCoreApplication::exit(0); });
        std::promise<void>().get_future().wait();
    });
    const int status = QCoreApplication::exec();
    // Nobody takes it out of the queue any more.
    mainQueue::async([] { std::puts("after the end"); });
    std::puts("ended");
    return status;
}
