// Owns the tick counter.
#include <Carbon/OSUtils.h>
#include <time.h>

UInt32 TickCount(void) {
    constexpr UInt64 kTicks = 60, kNanoseconds = 1'000'000'000;
    timespec now;
    clock_gettime(CLOCK_MONOTONIC, &now);
    return UInt32(UInt64(now.tv_sec) * kTicks + UInt64(now.tv_nsec) * kTicks / kNanoseconds);
}
