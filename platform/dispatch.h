// Queues of work: how a thread hands work to another.
#pragma once

#include <chrono>
#include <functional>

namespace platform {

using Work = std::function<void()>;

// The main thread's queue: work runs one after another, first in, first out, between the window's events. Whatever has
// not run when the application ends never runs.
namespace mainQueue {

// Both return at once; safe from any thread once the application runs. The delay counts from the call.
void async(Work work);
void asyncAfter(std::chrono::milliseconds delay, Work work);

}  // namespace mainQueue

// Work that a person waits for. Every piece gets a thread of its own at once, so that one that blocks holds no other
// back. The application ends without waiting for any of it.
namespace userInitiatedQueue {

void async(Work work);  // Returns at once; safe from any thread.

}  // namespace userInitiatedQueue

}  // namespace platform
