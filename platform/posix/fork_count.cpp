// Owns the count of forks.
#include "posix/fork_count.h"

#include <pthread.h>

#include <atomic>

namespace carbon {
namespace {

std::atomic<unsigned> sForks = 0;

}  // namespace

unsigned ForkCount() {
    static const int sInstalled = pthread_atfork(nullptr, nullptr, [] { ++sForks; });
    static_cast<void>(sInstalled);
    return sForks;
}

}  // namespace carbon
