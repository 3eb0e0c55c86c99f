// Which process is in front: the one that came there last and still lives.
#pragma once

#include "process_manager/table_file.h"

namespace carbon {

// Notes that the process of this slot has come to the front.
void CountAsFronted(TableFile& ioTable, Slot& ioSlot);

// The slot of the front process; null when no living one was ever in front.
Slot* FrontSlot(TableFile& ioTable);

}  // namespace carbon
