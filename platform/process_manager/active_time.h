// The processor time of other processes.
#pragma once

#include <Carbon/MacTypes.h>

#include "process_manager/process_table.h"

namespace carbon {

// What a process has used so far, in ticks; 0 when it has ended. The kernel is asked once in each
// of its own ticks at most, a few milliseconds: hosts go through the list for every request.
UInt32 TicksUsed(const ProcessEntry& inEntry);

}  // namespace carbon
