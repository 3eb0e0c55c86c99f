// Points in time that waits end at.
#pragma once

#include <Carbon/MacTypes.h>

#include <chrono>

namespace carbon {

using Clock = std::chrono::steady_clock;
using Moment = Clock::time_point;

constexpr Moment kNever = Moment::max();

// A tick is 1/60 s.
constexpr Clock::duration FromTicks(SInt64 inTicks) {
    return std::chrono::nanoseconds(inTicks * 1'000'000'000 / 60);
}

inline Moment AfterTicks(SInt64 inTicks) {
    return Clock::now() + FromTicks(inTicks);
}

// For poll and its kin: rounded up, so that the moment has come when the wait is over; -1 is for
// ever.
int MillisecondsUntil(Moment inMoment);

}  // namespace carbon
