// Queues that hand work from one thread to another.
#pragma once

#include <chrono>
#include <functional>

namespace platform {

using Work = std::function<void()>;

// The main thread's queue: work runs one after another, first in, first out, between the window's events. Work that is
// left when the application ends never runs.
namespace mainQueue {

// Both return at once; safe from any thread once the application runs. The delay counts from the call.
void async(Work work);
void asyncAfter(std::chrono::milliseconds delay, Work work);

}  // namespace mainQueue

// Work that a person waits for, each piece on a thread of its own, so that none delays another. The application does
// not wait for it to end.
namespace userInitiatedQueue {

void async(Work work);  // Returns at once; safe from any thread.

}  // namespace userInitiatedQueue

}  // namespace platform
