// Owns reading other processes' clocks, and the last readings.
#include "process_manager/active_time.h"

#include <ctime>

namespace carbon {
namespace {

struct Reading {
    UInt32 number;  // the serial number's low word; never used again, unlike a pid
    UInt32 ticks;
    timespec moment;
};

constexpr std::size_t kReadings = 16;

// The clock of another process's processor time, as the kernel numbers them. clock_getcpuclockid
// would ask the kernel once more whether it exists.
clockid_t ProcessorClock(pid_t inPid) {
    constexpr clockid_t kAllThreads = 2;
    return clockid_t(~unsigned(inPid) << 3) | kAllThreads;
}

UInt32 AskKernel(pid_t inPid) {
    timespec used;
    if (clock_gettime(ProcessorClock(inPid), &used) != 0) return 0;
    return UInt32(used.tv_sec * 60 + used.tv_nsec * 60 / 1'000'000'000);
}

bool AreEqual(const timespec& inA, const timespec& inB) {
    return inA.tv_sec == inB.tv_sec && inA.tv_nsec == inB.tv_nsec;
}

}  // namespace

// The coarse clock stands still between two of the kernel's ticks, and is read without a call.
UInt32 TicksUsed(const ProcessEntry& inEntry) {
    thread_local Reading sReadings[kReadings];
    const UInt32 number = inEntry.psn.lowLongOfPSN;
    Reading& reading = sReadings[number % kReadings];
    timespec now;
    clock_gettime(CLOCK_MONOTONIC_COARSE, &now);
    if (reading.number != number || !AreEqual(reading.moment, now))
        reading = {number, AskKernel(inEntry.pid), now};
    return reading.ticks;
}

}  // namespace carbon
