// An application that ends with pending work: some blocks forever, some is due in an hour.
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
    // Posted after the end, so it must not run.
    mainQueue::async([] { std::puts("after the end"); });
    std::puts("ended");
    return status;
}
