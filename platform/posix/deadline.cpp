// Owns the rounding of deadlines to what the kernel's waits take.
#include "posix/deadline.h"

#include <algorithm>
#include <limits>

namespace carbon {

int MillisecondsUntil(Moment inMoment) {
    if (inMoment == kNever) return -1;
    const auto left = inMoment - Clock::now();
    if (left <= Clock::duration::zero()) return 0;
    const auto whole = std::chrono::ceil<std::chrono::milliseconds>(left).count();
    return static_cast<int>(std::min<long long>(whole, std::numeric_limits<int>::max()));
}

}  // namespace carbon
