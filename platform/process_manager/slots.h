// One entry of the table: taking it, reading it, and finding out whether its process lives.
#pragma once

#include <optional>

#include "process_manager/process_table.h"
#include "process_manager/table_file.h"

namespace carbon {

// Removes the entry of the program that called up this one in its place. Before a slot is taken.
void WithdrawFormerProgram(TableFile& ioTable);

// Takes an unused slot for this thread. Null when the table is full of living processes.
Slot* ClaimSlot(TableFile& ioTable);

// Takes the slot that a launcher reserved for this process; null when there is none. A launcher
// that is just about to write down the number of the process it made is waited for.
Slot* ClaimReservedSlot(TableFile& ioTable);

// A number that no process has had.
UInt32 NewNumber(TableFile& ioTable);

// Keeps a number that comes from an earlier table from being given out again.
void CountAsGivenOut(TableFile& ioTable, UInt32 inNumber);

// Writes an entry, in the state kLaunching, into a slot that this thread holds. The number is
// written last and makes the entry visible; it is inEntry.psn's.
void Publish(TableFile& ioTable, Slot& outSlot, const ProcessEntry& inEntry);

// The path and name that are too long for the slot itself. Before Publish.
LongFacts& LongFactsOf(TableFile& ioTable, const Slot& inSlot);

// Makes the entry invisible; the slot can be used again once this thread lets go of it or ends.
void Withdraw(Slot& ioSlot);

// Lets go of a slot that this thread holds.
void LetGo(Slot& ioSlot);

// Has this thread hold the process's own slot when the one that held it has ended.
void HoldAgain(Slot& ioSlot);

// Notes that the process of this slot now runs, as the program of the caller.
void BeginRunning(Slot& ioSlot);

// The entry with this number, if its process lives. A dead one is cleared away.
Slot* FindLivingSlot(TableFile& ioTable, UInt32 inNumber);

// Whether the process of this number in this slot lives. A dead one is cleared away.
bool IsSlotAlive(Slot& ioSlot, UInt32 inNumber);

// Copies a slot. Nothing when its number is not (or no longer) inNumber.
std::optional<ProcessEntry> ReadSlot(const Slot& inSlot, UInt32 inNumber);

}  // namespace carbon
