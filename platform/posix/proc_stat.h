// A Linux process told apart from a later one with the same number.
#pragma once

#include <sys/types.h>

#include <cstdint>

namespace carbon {

// When a process started, in the kernel's clock ticks since the system did; 0 when there is no such
// process or it has ended and waits for its parent to ask.
std::uint64_t ProcessStartTime(pid_t inPid);

// What TickCount answered at that moment.
std::uint32_t TicksAtStart(std::uint64_t inStartTime);

// Whether the process that started then still runs.
bool IsProcessAlive(pid_t inPid, std::uint64_t inStartTime);

}  // namespace carbon
