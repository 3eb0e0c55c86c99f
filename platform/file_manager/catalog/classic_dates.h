// Dates as the classic calls count them.
#pragma once

#include <Carbon/MacTypes.h>

#include <optional>

namespace carbon {

// Seconds since 1904 in local time, from seconds of Unix time. Dates beyond either end stop there.
UInt32 ClassicDate(SInt64 inUnixTime);

// And back. 0 is no date.
std::optional<SInt64> UnixTimeOfClassicDate(UInt32 inDate);

}  // namespace carbon
