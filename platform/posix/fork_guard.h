// Locks of a process with threads, and its children.
#pragma once

#include <pthread.h>

namespace carbon {

// The priority of [[gnu::constructor]] functions that come before all static objects.
inline constexpr int kBeforeStaticObjects = 200;

// Has each fork wait for a lock, so that it is free in the child. The one registered last is taken
// first: locks under which no other is asked for are registered before all static objects, others
// after those that are asked for under them. The argument tells the lock and captures nothing.
template <typename GetMutex>
int HoldOverForks(GetMutex) {
    const auto release = [] { GetMutex{}().unlock(); };
    return pthread_atfork([] { GetMutex{}().lock(); }, release, release);
}

}  // namespace carbon
